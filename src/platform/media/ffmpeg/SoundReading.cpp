#include "platform/base/CMTime.h"
#include "platform/base/Causes.h"
#include "platform/base/Result.h"
#include "platform/media/CMSampleBuffer.h"
#include "platform/media/MediaModule_p.h"
#include "platform/media/ffmpeg/ClipSource_p.h"
#include "platform/media/ffmpeg/FFmpegHandles_p.h"
#include "platform/media/ffmpeg/MediaTime_p.h"
#include "platform/media/ffmpeg/TrackReading_p.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

namespace lamina {

namespace {

// What no recorder writes.
constexpr int kLowestRate = 4'000;
constexpr int kHighestRate = 768'000;

template <class Sample>
float number(Sample sample)
{
    if constexpr (std::is_floating_point_v<Sample>)
        return static_cast<float>(sample);
    else if constexpr (std::is_same_v<Sample, std::uint8_t>)
        return static_cast<float>(sample - 128) / 128.0F;
    else
        return static_cast<float>(std::ldexp(static_cast<double>(sample), 1 - 8 * static_cast<int>(sizeof(Sample))));
}

template <class Sample>
void copyNumbers(const AVFrame& frame, std::vector<float>& numbers)
{
    const auto channels = static_cast<std::size_t>(frame.ch_layout.nb_channels);
    const auto moments = static_cast<std::size_t>(frame.nb_samples);
    const bool planar = av_sample_fmt_is_planar(static_cast<AVSampleFormat>(frame.format)) != 0;
    for (std::size_t channel = 0; channel < channels; ++channel) {
        const auto* from = reinterpret_cast<const Sample*>(frame.extended_data[planar ? channel : 0]);
        const std::size_t first = planar ? 0 : channel;
        const std::size_t step = planar ? 1 : channels;
        for (std::size_t i = 0; i < moments; ++i)
            numbers[i * channels + channel] = number(from[first + i * step]);
    }
}

bool copyNumbers(const AVFrame& frame, std::vector<float>& numbers)
{
    switch (av_get_packed_sample_fmt(static_cast<AVSampleFormat>(frame.format))) {
    case AV_SAMPLE_FMT_U8:
        copyNumbers<std::uint8_t>(frame, numbers);
        return true;
    case AV_SAMPLE_FMT_S16:
        copyNumbers<std::int16_t>(frame, numbers);
        return true;
    case AV_SAMPLE_FMT_S32:
        copyNumbers<std::int32_t>(frame, numbers);
        return true;
    case AV_SAMPLE_FMT_S64:
        copyNumbers<std::int64_t>(frame, numbers);
        return true;
    case AV_SAMPLE_FMT_FLT:
        copyNumbers<float>(frame, numbers);
        return true;
    case AV_SAMPLE_FMT_DBL:
        copyNumbers<double>(frame, numbers);
        return true;
    default:
        return false;
    }
}

/// Tells the times of sound to the sample: clocks of containers may be as coarse as milliseconds, so that what is only
/// that far from the end of the piece before follows it.
class SampleClock {
public:
    CMTime place(const CMTime& told, int rate, int count)
    {
        const std::int64_t wanted = told.converted(rate).value;
        const std::int64_t slip = rate / kSlipsPerSecond;
        if (rate != m_rate || std::llabs(wanted - m_next) > slip)
            m_next = wanted;
        m_rate = rate;
        const CMTime time = CMTime::make(m_next, rate);
        m_next += count;
        return time;
    }

private:
    static constexpr int kSlipsPerSecond = 500;
    int m_rate = 0;
    std::int64_t m_next = 0;
};

class SoundReading final : public TrackReading {
public:
    SoundReading(OpenTrack track, const TrackRequest& request)
        : m_track(std::move(track))
        , m_request(request)
    {
    }

    Result<CMSampleBuffer> next() override
    {
        if (!m_begun) {
            m_begun = true;
            if (Outcome found = findBeginning(); !found)
                return found.error();
        }
        for (;;) {
            Result<CMSampleBuffer> piece = m_first.isValid() ? std::exchange(m_first, {}) : read();
            if (!piece || !piece->isValid() || isBehind(m_request.range, piece->presentationTime))
                return piece && piece->isValid() ? CMSampleBuffer{} : piece;
            if (piece->presentationTime + piece->duration > m_request.range.start)
                return piece;
        }
    }

private:
    /// Decoders of sound need some packets until they give what was recorded.
    static constexpr double kLead = 0.5;

    Outcome findBeginning()
    {
        if (!(m_request.range.start > kCMTimeZero))
            return success();
        StartSearch search(m_request, kLead);
        for (;;) {
            const Result<bool> placed = search.step(m_track, TrackRequest::Content::Sound);
            if (!placed)
                return placed.error();
            if (!*placed)
                return success();
            m_clock = {};
            Result<CMSampleBuffer> first = read();
            if (!first && m_track.source->isOver())
                return first.error();
            if (first)
                m_first = std::move(*first);
            if (m_first.isValid() && m_first.presentationTime <= m_request.range.start)
                return success();
        }
    }

    Result<CMSampleBuffer> read()
    {
        for (;;) {
            const Result<Frame> frame = m_track.decoder->next();
            if (!frame)
                return frame.error();
            if (!*frame)
                return m_track.decoder->isDamaged() ? Result<CMSampleBuffer>(Error{{}, cause::kClipDamaged})
                                                    : CMSampleBuffer{};
            if ((*frame)->nb_samples > 0)
                return piece(**frame);
        }
    }

    Result<CMSampleBuffer> piece(const AVFrame& frame)
    {
        const int rate = frame.sample_rate;
        const int channels = frame.ch_layout.nb_channels;
        if (rate < kLowestRate || rate > kHighestRate || channels < 1)
            return Error{{}, cause::kClipDamaged};
        auto sound = std::make_shared<AudioBuffer>();
        sound->sampleRate = rate;
        sound->channels = channels;
        sound->samples.resize(static_cast<std::size_t>(channels) * static_cast<std::size_t>(frame.nb_samples));
        if (!copyNumbers(frame, sound->samples))
            return Error{{}, cause::kClipDamaged};
        const CMTime told = mediaTime(m_track.decoder->ticks(), m_track.stream()->time_base) - m_request.startTime;
        CMSampleBuffer sample;
        sample.presentationTime = m_clock.place(told, rate, frame.nb_samples);
        sample.duration = CMTime::make(frame.nb_samples, rate);
        sample.audio = std::move(sound);
        return sample;
    }

    OpenTrack m_track;
    TrackRequest m_request;
    SampleClock m_clock;
    CMSampleBuffer m_first;
    bool m_begun = false;
};

class StoredSoundReading final : public TrackReading {
public:
    StoredSoundReading(OpenTrack track, const TrackRequest& request)
        : m_track(std::move(track))
        , m_request(request)
    {
    }

    Result<CMSampleBuffer> next() override
    {
        if (!m_begun) {
            m_begun = true;
            StartSearch search(m_request, 0);
            if (m_request.range.start > kCMTimeZero)
                if (const Result<bool> placed = search.step(m_track, TrackRequest::Content::StoredSound); !placed)
                    return placed.error();
        }
        for (;;) {
            Result<CMSampleBuffer> sample = read();
            if (!sample || !sample->isValid())
                return sample;
            if (isBehind(m_request.range, sample->presentationTime))
                return CMSampleBuffer{};
            // The packet that ends at the start is what the decoder of the first one after it needs.
            const CMTime end = sample->presentationTime + sample->duration + sample->duration;
            if (!sample->duration.isValid() || end > m_request.range.start)
                return sample;
        }
    }

private:
    Result<CMSampleBuffer> read()
    {
        SharedPacket packet(av_packet_alloc(), FreeFFmpeg());
        if (!packet)
            return Error{{}, cause::kNoMemory};
        const Result<bool> more = m_track.source->read(packet.get());
        if (!more)
            return more.error();
        if (!*more)
            return CMSampleBuffer{};
        const AVRational unit = m_track.stream()->time_base;
        packet->time_base = unit;
        const std::int64_t zero = m_request.startTime.converted(unit.den).value / unit.num;
        goOn(*packet, zero);
        for (std::int64_t* time : {&packet->pts, &packet->dts})
            if (*time != AV_NOPTS_VALUE)
                *time = av_sat_sub64(*time, zero);
        CMSampleBuffer sample;
        sample.presentationTime = mediaTime(packet->pts != AV_NOPTS_VALUE ? packet->pts : packet->dts, unit);
        sample.decodeTime = mediaTime(packet->dts, unit);
        sample.duration = mediaDuration(packet->duration, unit);
        sample.packet = std::move(packet);
        return sample;
    }

    /// A packet without a time follows the one before, the first begins at `zero`; and where recordings were joined the
    /// clock may begin anew, but time goes on.
    void goOn(AVPacket& packet, std::int64_t zero)
    {
        const std::int64_t told = packet.pts != AV_NOPTS_VALUE ? packet.pts : packet.dts;
        const std::int64_t length = std::max<std::int64_t>(0, packet.duration);
        std::int64_t time = m_next.value_or(zero);
        if (told != AV_NOPTS_VALUE) {
            const std::int64_t second = av_rescale_q(1, {1, 1}, m_track.stream()->time_base);
            const std::int64_t shifted = av_sat_add64(told, m_shift);
            if (!m_next || shifted >= av_sat_sub64(*m_next, av_sat_add64(second, av_sat_add64(length, length))))
                time = shifted;
            m_shift = av_sat_sub64(time, told);
        }
        packet.dts = packet.dts != AV_NOPTS_VALUE && told != AV_NOPTS_VALUE ? av_sat_add64(packet.dts, m_shift) : time;
        packet.pts = time;
        m_next = av_sat_add64(time, length);
    }

    OpenTrack m_track;
    TrackRequest m_request;
    std::int64_t m_shift = 0;           ///< what is added to the stream's clock, in its ticks
    std::optional<std::int64_t> m_next; ///< when the packet after the last one begins
    bool m_begun = false;
};

} // namespace

Result<std::unique_ptr<TrackReading>> readSound(OpenTrack track, const TrackRequest& request)
{
    return std::unique_ptr<TrackReading>(std::make_unique<SoundReading>(std::move(track), request));
}

Result<std::unique_ptr<TrackReading>> readStoredSound(OpenTrack track, const TrackRequest& request)
{
    return std::unique_ptr<TrackReading>(std::make_unique<StoredSoundReading>(std::move(track), request));
}

} // namespace lamina
