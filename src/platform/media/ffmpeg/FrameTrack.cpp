#include "platform/media/ffmpeg/FrameTrack_p.h"

#include "platform/base/Causes.h"
#include "platform/media/ffmpeg/FrameTurning_p.h"

extern "C" {
#include <libavutil/display.h>
}

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace lamina {

namespace {

constexpr int kUsualTicks = 90'000; // a second; the usual rates come out whole
constexpr int kFewestTicks = 10'000;
constexpr int kMostTicks = 1'000'000;
constexpr double kUsualRate = 30;

/// A unit in which times like this one come out exactly, where there is one that players like.
int ticksFor(const CMTime& time)
{
    const int scale = time.timescale;
    if (kUsualTicks % scale == 0 || scale > kMostTicks)
        return kUsualTicks;
    return scale >= kFewestTicks ? scale : scale * ((kFewestTicks + scale - 1) / scale);
}

AVRational plannedRate(double rate)
{
    constexpr double kHighest = 1000;
    constexpr int kFinest = 1001 * 1000;
    return av_d2q(rate > 0 && rate <= kHighest ? rate : kUsualRate, kFinest);
}

/// Null when memory is short.
AVStream* addTurned(MovieFile& file, const AVTrackTransform& transform)
{
    AVStream* track = file.reserveTrack();
    if (!track || transform == AVTrackTransform{})
        return track;
    constexpr std::size_t kBytes = 9 * sizeof(std::int32_t);
    auto* matrix = reinterpret_cast<std::int32_t*>(av_stream_new_side_data(track, AV_PKT_DATA_DISPLAYMATRIX, kBytes));
    if (!matrix)
        return nullptr;
    constexpr double kQuarter = 90;
    av_display_rotation_set(matrix, kQuarter * transform.quarters);
    if (transform.mirrors) // before it is turned: what is stored on the right counts to the left
        for (int* of : {matrix, matrix + 1})
            *of = -*of;
    return track;
}

} // namespace

FrameTrack::FrameTrack(MovieFile& file, const AVVideoSettings& settings, AVStream* track, const AVTrackTransform& turn)
    : m_file(file)
    , m_settings(settings)
    , m_turn(turn)
    , m_track(track)
{
}

Result<std::unique_ptr<MovieTrack>> FrameTrack::add(MovieFile& file, const AVVideoSettings& settings,
                                                    const AVTrackTransform& transform)
{
    const AVTrackTransform told = file.tellsTurns() ? transform : AVTrackTransform{};
    AVStream* track = addTurned(file, told);
    if (!track)
        return Error{{}, cause::kNoMemory};
    return std::unique_ptr<MovieTrack>(
        new FrameTrack(file, settings, track, file.tellsTurns() ? AVTrackTransform{} : transform));
}

Outcome FrameTrack::open(const PictureKind& kind, const CMTime& time)
{
    H264Settings settings;
    settings.size = evenSize(m_settings.size);
    if (m_turn.swapsSides())
        std::swap(settings.size.width, settings.size.height);
    settings.kind = kind;
    settings.unit = {1, ticksFor(time)};
    settings.rate = plannedRate(m_settings.frameRate);
    settings.crf = std::clamp(m_settings.crf, 1, 51);
    Result<SharedEncoder> encoder = openH264(settings);
    if (!encoder)
        return encoder.error();
    m_encoder = std::move(*encoder);
    m_adapter.emplace(kind, m_settings.size);
    return MovieFile::describe(m_track, m_encoder.get()) ? success() : Outcome(Error{{}, cause::kNoMemory});
}

std::int64_t FrameTrack::ticks(const CMTime& time) const
{
    return time.converted(m_encoder->time_base.den).value;
}

Outcome FrameTrack::write(const CMSampleBuffer& frame)
{
    if (!isDescribed())
        if (Outcome opened = open(encodedKind(*frame.imageBuffer), frame.presentationTime); !opened)
            return opened;
    if (frame.presentationTime < kCMTimeZero) {
        m_early = frame;
        return success();
    }
    if (const std::optional<CMSampleBuffer> early = std::exchange(m_early, std::nullopt)) {
        const bool lasts = !early->duration.isNumeric() || early->presentationTime + early->duration > kCMTimeZero;
        if (lasts && m_last < 0 && frame.presentationTime > kCMTimeZero)
            if (Outcome shown = show(*early, kCMTimeZero); !shown)
                return shown;
    }
    return show(frame, frame.presentationTime);
}

std::int64_t FrameTrack::ownDuration(const CMSampleBuffer& frame) const
{
    const std::int64_t told = frame.duration.isNumeric() ? ticks(frame.duration) : 0;
    return told > 0 ? told : std::llround(m_encoder->time_base.den / av_q2d(m_encoder->framerate));
}

Outcome FrameTrack::show(const CMSampleBuffer& frame, const CMTime& time)
{
    const std::int64_t tick = ticks(time);
    if (tick <= m_last)
        return success();
    if (const auto before = m_durations.find(m_last); before != m_durations.end())
        before->second = tick - m_last;
    m_last = tick;
    m_durations[tick] = ownDuration(frame);
    Result<Frame> adapted = m_adapter->adapt(frame.imageBuffer);
    if (!adapted)
        return adapted.error();
    Frame picture = std::move(*adapted);
    if (!(m_turn == AVTrackTransform{}))
        picture = turned(*picture, m_turn);
    if (!picture)
        return Error{{}, cause::kNoMemory};
    picture->pts = tick;
    return encode(picture.get());
}

Outcome FrameTrack::encode(const AVFrame* frame)
{
    EncodedFrame encoded = encodeFrame(m_encoder.get(), frame);
    for (const Packet& packet : encoded.packets) {
        const auto duration = m_durations.find(packet->pts);
        if (duration == m_durations.end())
            continue;
        packet->duration = duration->second;
        m_durations.erase(duration);
    }
    return m_file.write(encoded, m_encoder.get(), m_track, 0);
}

Outcome FrameTrack::finish()
{
    if (m_early && m_last < 0)
        if (Outcome shown = show(*m_early, kCMTimeZero); !shown)
            return shown;
    return isDescribed() ? encode(nullptr) : success();
}

} // namespace lamina
