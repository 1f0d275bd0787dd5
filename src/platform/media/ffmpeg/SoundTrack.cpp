#include "platform/media/ffmpeg/SoundTrack_p.h"

#include "platform/base/Causes.h"
#include "platform/media/ffmpeg/ClipSource_p.h"

extern "C" {
#include <libavutil/channel_layout.h>
}

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>

namespace lamina {

namespace {

constexpr int kUsualRate = 48'000;
constexpr int kMostChannels = 8; // of AAC's usual layouts

/// Differences up to a tenth of a second are slips of a clip's clock.
constexpr double kSlipOfClips = 0.1;

// What no recorder writes; the lower bound keeps hostile clips from growing a thousandfold.
constexpr int kLowestRate = 4'000;
constexpr int kHighestRate = 768'000;

int rateFor(int source)
{
    return source == 32'000 || source == 44'100 ? source : kUsualRate;
}

int nearestRate(const AVCodec& codec, int wanted)
{
    int nearest = kUsualRate;
    for (const int* rate = codec.supported_samplerates; rate && *rate != 0; ++rate)
        if (std::abs(*rate - wanted) < std::abs(nearest - wanted))
            nearest = *rate;
    return nearest;
}

} // namespace

SoundSettings SoundSettings::of(const AVCodecParameters& source)
{
    const bool isMono = source.ch_layout.nb_channels <= 1;
    SoundSettings settings;
    settings.rate = rateFor(source.sample_rate);
    settings.channels = isMono ? 1 : 2;
    settings.bitsPerSecond = isMono ? 96'000 : 160'000;
    settings.slip = kSlipOfClips;
    return settings;
}

Result<std::unique_ptr<SoundTrack>> SoundTrack::add(MovieFile& file, const SoundSettings& settings, AVStream* reserved)
{
    std::unique_ptr<SoundTrack> track(new SoundTrack(file, settings));
    const Outcome opened = track->open(reserved);
    if (!opened)
        return opened.error();
    return track;
}

Outcome SoundTrack::open(AVStream* reserved)
{
    const AVCodec* codec = avcodec_find_encoder_by_name("aac");
    if (!codec)
        return Error{{}, cause::kNoAAC};
    m_encoder.reset(avcodec_alloc_context3(codec));
    m_frame.reset(av_frame_alloc());
    if (!m_encoder || !m_frame)
        return m_file.failure(AVERROR(ENOMEM));
    const int channels = std::clamp(m_settings.channels, 1, kMostChannels);
    av_channel_layout_default(&m_encoder->ch_layout, channels);
    m_encoder->sample_rate = nearestRate(*codec, m_settings.rate);
    m_encoder->sample_fmt = AV_SAMPLE_FMT_FLTP;
    m_encoder->bit_rate = m_settings.bitsPerSecond;
    m_encoder->time_base = {1, m_encoder->sample_rate};
    m_encoder->flags |= AV_CODEC_FLAG_GLOBAL_HEADER | AV_CODEC_FLAG_BITEXACT;
    if (const int error = avcodec_open2(m_encoder.get(), codec, nullptr); error < 0)
        return m_file.failure(error);
    m_converted.resize(static_cast<std::size_t>(channels));
    m_queue.reset(av_audio_fifo_alloc(AV_SAMPLE_FMT_FLTP, channels, m_encoder->frame_size));
    m_track = reserved ? reserved : m_file.reserveTrack();
    const bool isWhole = m_queue && m_track && MovieFile::describe(m_track, m_encoder.get());
    return isWhole ? success() : Outcome(m_file.failure(AVERROR(ENOMEM)));
}

std::int64_t SoundTrack::end() const
{
    constexpr double kNever = 1e15;
    return std::llround(std::min(m_settings.end * m_encoder->sample_rate, kNever));
}

/// Where the next sample comes to stand.
std::int64_t SoundTrack::stands() const
{
    const std::int64_t within = m_resampler ? swr_get_delay(m_resampler.get(), m_encoder->sample_rate) : 0;
    return m_position + queued() + within;
}

double SoundTrack::time() const
{
    return static_cast<double>(m_position + queued()) / m_encoder->sample_rate;
}

Outcome SoundTrack::write(const AVFrame& frame, double time)
{
    const int rate = m_encoder->sample_rate;
    if (frame.sample_rate < kLowestRate || frame.sample_rate > kHighestRate || frame.ch_layout.nb_channels < 1)
        return Error{{}, cause::kClipDamaged};
    constexpr double kLatest = 1e9;
    const std::int64_t slip = m_resampler ? std::llround(m_settings.slip * rate) : 0;
    const std::int64_t begins = std::llround(std::clamp(time, -kLatest, kLatest) * rate);
    const std::int64_t late = begins - stands();
    const std::int64_t cut = -late > slip ? av_rescale_rnd(-late, frame.sample_rate, rate, AV_ROUND_NEAR_INF) : 0;
    if (cut >= frame.nb_samples)
        return success();
    Outcome outcome = late > slip ? flush() : success();
    if (outcome && late > slip)
        outcome = skipTo(begins);
    if (outcome)
        outcome = follow(frame);
    if (outcome)
        outcome = resampleFrom(frame, static_cast<int>(cut));
    return outcome ? encodeWhole() : outcome;
}

/// Nothing is left within the resampler, which is then made anew.
Outcome SoundTrack::flush()
{
    Outcome outcome = m_resampler ? resample(nullptr, 0) : success();
    m_resampler.reset();
    return outcome;
}

/// A track may change its rate or channels on the way.
Outcome SoundTrack::follow(const AVFrame& frame)
{
    const Kind kind{frame.sample_rate, frame.format, frame.ch_layout.nb_channels};
    if (m_resampler && kind == m_kind)
        return success();
    if (Outcome flushed = flush(); !flushed)
        return flushed;
    AVChannelLayout layout{};
    if (frame.ch_layout.order == AV_CHANNEL_ORDER_UNSPEC)
        av_channel_layout_default(&layout, kind.channels);
    else if (av_channel_layout_copy(&layout, &frame.ch_layout) < 0)
        return m_file.failure(AVERROR(ENOMEM));
    SwrContext* context = nullptr;
    const int error = swr_alloc_set_opts2(&context, &m_encoder->ch_layout, AV_SAMPLE_FMT_FLTP, m_encoder->sample_rate,
                                          &layout, static_cast<AVSampleFormat>(kind.format), kind.rate, 0, nullptr);
    av_channel_layout_uninit(&layout);
    m_resampler.reset(context);
    m_kind = kind;
    return error >= 0 && swr_init(context) >= 0 ? success() : Outcome(Error{{}, cause::kClipDamaged});
}

/// Goes on at a later place, with silence up to there: many players would play what follows a gap at once. Only where a
/// clip claims enormous ones they stay gaps.
Outcome SoundTrack::skipTo(std::int64_t position)
{
    constexpr std::int64_t kMostSilence = 600; // seconds, of all gaps together
    std::int64_t gap = position - stands();
    if (m_silence + gap > kMostSilence * m_encoder->sample_rate)
        return leaveGap(position);
    m_silence += gap;
    Outcome outcome = success();
    while (outcome && gap > 0) {
        const std::int64_t piece = std::min<std::int64_t>(gap, m_encoder->sample_rate);
        gap -= piece;
        outcome = queueSilence(static_cast<int>(piece));
        if (outcome)
            outcome = encodeWhole();
    }
    return outcome;
}

Outcome SoundTrack::leaveGap(std::int64_t position)
{
    Outcome outcome = queued() > 0 ? encode(queued(), m_encoder->frame_size - queued()) : success();
    m_position = std::max(m_position, position);
    return outcome;
}

/// Where so many samples of each channel can be written.
std::vector<void*> SoundTrack::planes(int samples)
{
    std::vector<void*> all;
    for (std::vector<float>& channel : m_converted) {
        channel.resize(static_cast<std::size_t>(samples));
        all.push_back(channel.data());
    }
    return all;
}

Outcome SoundTrack::queueSilence(int samples)
{
    std::vector<void*> channels = planes(samples);
    for (std::vector<float>& channel : m_converted)
        std::fill(channel.begin(), channel.end(), 0.0F);
    const int wrote = av_audio_fifo_write(m_queue.get(), channels.data(), samples);
    return wrote < samples ? Outcome(m_file.failure(AVERROR(ENOMEM))) : success();
}

Outcome SoundTrack::resampleFrom(const AVFrame& frame, int first)
{
    const auto format = static_cast<AVSampleFormat>(frame.format);
    const bool isPlanar = av_sample_fmt_is_planar(format) != 0;
    const int channels = frame.ch_layout.nb_channels;
    const auto offset = static_cast<std::size_t>(first) * static_cast<std::size_t>(av_get_bytes_per_sample(format)) *
                        static_cast<std::size_t>(isPlanar ? 1 : channels);
    std::vector<const std::uint8_t*> samples;
    for (int i = 0; i < (isPlanar ? channels : 1); ++i)
        samples.push_back(frame.extended_data[i] + offset);
    return resample(samples.data(), frame.nb_samples - first);
}

/// Null: what is left.
Outcome SoundTrack::resample(const std::uint8_t** samples, int count)
{
    const int most = swr_get_out_samples(m_resampler.get(), count);
    if (most <= 0)
        return success();
    std::vector<void*> channels = planes(most);
    const int got =
        swr_convert(m_resampler.get(), reinterpret_cast<std::uint8_t**>(channels.data()), most, samples, count);
    if (got < 0)
        return Error{{}, cause::kClipDamaged};
    const int wrote = av_audio_fifo_write(m_queue.get(), channels.data(), got);
    return wrote < got ? Outcome(m_file.failure(AVERROR(ENOMEM))) : success();
}

Outcome SoundTrack::encodeWhole()
{
    while (queued() >= m_encoder->frame_size && m_position + m_encoder->frame_size <= end())
        if (Outcome encoded = encode(m_encoder->frame_size, 0); !encoded)
            return encoded;
    return success();
}

Outcome SoundTrack::encode(int samples, int silence)
{
    av_frame_unref(m_frame.get());
    m_frame->format = AV_SAMPLE_FMT_FLTP;
    m_frame->sample_rate = m_encoder->sample_rate;
    m_frame->nb_samples = samples + silence;
    if (av_channel_layout_copy(&m_frame->ch_layout, &m_encoder->ch_layout) < 0 ||
        av_frame_get_buffer(m_frame.get(), 0) < 0)
        return m_file.failure(AVERROR(ENOMEM));
    av_audio_fifo_read(m_queue.get(), reinterpret_cast<void**>(m_frame->extended_data), samples);
    av_samples_set_silence(m_frame->extended_data, samples, silence, m_encoder->ch_layout.nb_channels,
                           AV_SAMPLE_FMT_FLTP);
    m_frame->pts = m_position;
    m_position += m_frame->nb_samples;
    return write(m_frame.get());
}

Outcome SoundTrack::write(const AVFrame* frame)
{
    return m_file.write(encodeFrame(m_encoder.get(), frame), m_encoder.get(), m_track, 0);
}

Outcome SoundTrack::finish()
{
    Outcome outcome = flush();
    if (outcome)
        outcome = encodeWhole();
    const auto rest = static_cast<int>(std::min<std::int64_t>(queued(), end() - m_position));
    if (outcome && rest > 0)
        outcome = encode(rest, 0);
    return outcome ? write(nullptr) : outcome;
}

} // namespace lamina
