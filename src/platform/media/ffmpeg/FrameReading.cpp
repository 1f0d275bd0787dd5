#include "platform/media/ffmpeg/FrameReading_p.h"

#include "platform/base/Causes.h"
#include "platform/media/ffmpeg/ClipPicture_p.h"
#include "platform/media/ffmpeg/FFmpegHandles_p.h"
#include "platform/media/ffmpeg/StreamDecoder_p.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

namespace lamina {

namespace {

/// Times are fractions that floating point only comes near to.
constexpr double kSameTime = 1e-6;

/// A frame that was kept, and when it begins.
struct FoundFrame {
    Frame frame{av_frame_alloc()};
    double time = 0;
    bool later = false; ///< it is the first one that was found, and begins after the time that was asked for
};

/// Decodes until a frame begins after `seconds`, and keeps the one before. Nothing where no frame came at all.
class FrameSearch {
public:
    FrameSearch(double seconds, FoundFrame& found)
        : m_seconds(seconds)
        , m_found(found)
    {
    }

    Outcome run(ClipSource& source)
    {
        Result<StreamDecoder> decoder = StreamDecoder::open(source, source.picture(), 1);
        if (!decoder)
            return decoder.error();
        const Packet packet(av_packet_alloc());
        if (!packet || !m_found.frame)
            return Error{{}, cause::kNoMemory};
        bool more = true;
        while (more && !m_done) {
            const Result<bool> read = source.read(packet.get());
            if (!read)
                return read.error();
            more = *read;
            const auto look = [this](const AVFrame& frame, double time) { return take(frame, time); };
            Outcome decoded = decoder->decode(more ? packet.get() : nullptr, look);
            av_packet_unref(packet.get());
            if (!decoded)
                return decoded;
        }
        return hasFrame() ? success() : Outcome(Error{{}, cause::kClipDamaged});
    }

private:
    bool hasFrame() const { return m_found.frame->width > 0; }

    Outcome take(const AVFrame& frame, double time)
    {
        const bool later = time > m_seconds + kSameTime;
        m_done = m_done || later;
        if (later && hasFrame())
            return success();
        av_frame_unref(m_found.frame.get());
        m_found.time = time;
        m_found.later = later;
        return av_frame_ref(m_found.frame.get(), &frame) < 0 ? Outcome(Error{{}, cause::kNoMemory}) : success();
    }

    double m_seconds;
    FoundFrame& m_found;
    bool m_done = false;
};

/// Below it, decoding from the beginning is as good as a search by an index that may be wrong.
constexpr double kWorthSeeking = 1;

Result<FoundFrame> findFrame(std::unique_ptr<ClipSource>& source, double seconds)
{
    FoundFrame found;
    if (seconds > kWorthSeeking && source->seek(seconds)) {
        const Outcome outcome = FrameSearch(seconds, found).run(*source);
        if (outcome && !found.later)
            return found;
        if (source->isOver())
            return Error{{}, source->overCause()};
    }
    if (seconds > kWorthSeeking) { // the index led astray: once more from the beginning
        Result<std::unique_ptr<ClipSource>> anew = ClipSource::open(source->file(), ClipSource::Tracks::Picture);
        if (!anew)
            return anew.error();
        source = std::move(*anew);
        found = {};
    }
    const Outcome outcome = FrameSearch(seconds, found).run(*source);
    return outcome ? Result<FoundFrame>(std::move(found)) : outcome.error();
}

double durationOf(ClipSource& source)
{
    const AVStream* picture = source.picture();
    if (picture->duration != AV_NOPTS_VALUE && picture->duration > 0)
        return static_cast<double>(picture->duration) * av_q2d(picture->time_base);
    const std::int64_t whole = source.container()->duration;
    return whole != AV_NOPTS_VALUE && whole > 0 ? static_cast<double>(whole) / AV_TIME_BASE : 0;
}

} // namespace

ClipDetails detailsOf(ClipSource& source)
{
    AVStream* picture = source.picture();
    const AVRational rate = picture->avg_frame_rate;
    ClipDetails details;
    details.size = shownSize(source.container(), picture);
    details.duration = durationOf(source);
    details.frameRate = rate.num > 0 && rate.den > 0 ? av_q2d(rate) : 0;
    details.hasSound = av_find_best_stream(source.container(), AVMEDIA_TYPE_AUDIO, -1, -1, nullptr, 0) >= 0;
    return details;
}

Result<ClipDetails> readDetails(const ClipFile& clip)
{
    const Result<std::unique_ptr<ClipSource>> source = ClipSource::open(clip, ClipSource::Tracks::Picture);
    return source ? Result<ClipDetails>(detailsOf(**source)) : source.error();
}

Result<double> readFrame(const ClipFile& clip, double seconds, ClipDetails& details,
                         const MediaModule::Allocate& allocate)
{
    Result<std::unique_ptr<ClipSource>> source = ClipSource::open(clip, ClipSource::Tracks::Picture);
    if (!source)
        return source.error();
    details = detailsOf(**source);
    const auto shown = static_cast<std::size_t>(details.size.width) * static_cast<std::size_t>(details.size.height);
    if (4 * shown > clip.memoryLimit)
        return Error{{}, cause::kClipTooLarge};
    const Result<FoundFrame> found = findFrame(*source, seconds);
    if (!found)
        return found.error();
    std::uint8_t* pixels = allocate(details.size);
    if (!pixels)
        return Error{{}, cause::kNoMemory};
    FrameConverter converter(Turn::ofTrack((*source)->picture()), details.size);
    const Outcome converted = converter.convert(*found->frame, pixels);
    return converted ? Result<double>(found->time) : converted.error();
}

} // namespace lamina
