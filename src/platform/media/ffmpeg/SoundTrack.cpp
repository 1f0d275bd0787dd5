#include "platform/media/ffmpeg/SoundTrack_p.h"

#include "platform/base/Causes.h"
#include "platform/media/ffmpeg/ClipSource_p.h"

extern "C" {
#include <libavutil/channel_layout.h>
}

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace lamina {

namespace {

constexpr int kUsualRate = 48'000;
constexpr int kMostChannels = 2;

/// Differences up to a tenth of a second are slips of the clip's clock.
constexpr int kSlipsPerSecond = 10;

// What no recorder writes; the lower bound keeps hostile clips from growing a thousandfold.
constexpr int kLowestRate = 4'000;
constexpr int kHighestRate = 768'000;

int rateFor(int source)
{
    return source == 32'000 || source == 44'100 ? source : kUsualRate;
}

} // namespace

Result<std::unique_ptr<SoundTrack>> SoundTrack::add(MovieFile& file, const AVCodecParameters& source, double end)
{
    std::unique_ptr<SoundTrack> track(new SoundTrack(file, end));
    const Outcome opened = track->open(source);
    if (!opened)
        return opened.error();
    return track;
}

Outcome SoundTrack::open(const AVCodecParameters& source)
{
    const AVCodec* codec = avcodec_find_encoder_by_name("aac");
    m_encoder.reset(codec ? avcodec_alloc_context3(codec) : nullptr);
    m_frame.reset(av_frame_alloc());
    if (!m_encoder || !m_frame)
        return m_file.failure(AVERROR(ENOMEM));
    const int channels = std::clamp(source.ch_layout.nb_channels, 1, kMostChannels);
    av_channel_layout_default(&m_encoder->ch_layout, channels);
    m_encoder->sample_rate = rateFor(source.sample_rate);
    m_encoder->sample_fmt = AV_SAMPLE_FMT_FLTP;
    m_encoder->bit_rate = channels == 1 ? 96'000 : 160'000;
    m_encoder->time_base = {1, m_encoder->sample_rate};
    m_encoder->flags |= AV_CODEC_FLAG_GLOBAL_HEADER | AV_CODEC_FLAG_BITEXACT;
    if (const int error = avcodec_open2(m_encoder.get(), codec, nullptr); error < 0)
        return m_file.failure(error);
    m_queue.reset(av_audio_fifo_alloc(AV_SAMPLE_FMT_FLTP, channels, m_encoder->frame_size));
    m_track = m_file.addTrack(m_encoder.get());
    return m_queue && m_track ? success() : Outcome(m_file.failure(AVERROR(ENOMEM)));
}

std::int64_t SoundTrack::end() const
{
    constexpr double kNever = 1e15;
    return std::llround(std::min(m_end * m_encoder->sample_rate, kNever));
}

double SoundTrack::time() const
{
    return static_cast<double>(m_position + queued()) / m_encoder->sample_rate;
}

Outcome SoundTrack::write(const AVFrame& frame, double time)
{
    const int rate = m_encoder->sample_rate;
    const std::int64_t slip = rate / kSlipsPerSecond;
    if (frame.sample_rate < kLowestRate || frame.sample_rate > kHighestRate || frame.ch_layout.nb_channels < 1)
        return Error{{}, cause::kClipDamaged};
    const double length = static_cast<double>(frame.nb_samples) / frame.sample_rate;
    constexpr double kLatest = 1e9;
    const std::int64_t stands = m_position + queued();
    const std::int64_t begins = std::llround(std::clamp(time, -kLatest, kLatest) * rate);
    const std::int64_t ends = begins + std::llround(length * rate);
    if (ends <= 0 || ends + slip <= stands)
        return success();
    Outcome outcome = follow(frame);
    if (outcome && begins > stands + slip)
        outcome = skipTo(begins);
    if (outcome)
        outcome = resample(&frame);
    return outcome ? encodeWhole() : outcome;
}

/// A track may change its rate or channels on the way.
Outcome SoundTrack::follow(const AVFrame& frame)
{
    const Kind kind{frame.sample_rate, frame.format, frame.ch_layout.nb_channels};
    if (m_resampler && kind == m_kind)
        return success();
    if (m_resampler)
        if (Outcome flushed = resample(nullptr); !flushed)
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
    const int whole = m_encoder->frame_size;
    const std::int64_t gap = position - m_position - queued();
    const bool filled = m_silence + gap <= kMostSilence * m_encoder->sample_rate;
    m_silence += filled ? gap : 0;
    Outcome outcome = queued() > 0 ? encode(queued(), whole - queued()) : success();
    while (outcome && filled && position - m_position >= whole)
        outcome = encode(0, whole);
    const std::int64_t rest = std::max<std::int64_t>(0, position - m_position);
    if (filled)
        return outcome ? queueSilence(static_cast<int>(rest)) : outcome;
    m_position += rest;
    return outcome;
}

Outcome SoundTrack::queueSilence(int samples)
{
    void* planes[kMostChannels];
    for (int i = 0; i < kMostChannels; ++i) {
        m_converted[i].assign(static_cast<std::size_t>(samples), 0);
        planes[i] = m_converted[i].data();
    }
    const int wrote = av_audio_fifo_write(m_queue.get(), planes, samples);
    return wrote < samples ? Outcome(m_file.failure(AVERROR(ENOMEM))) : success();
}

Outcome SoundTrack::resample(const AVFrame* frame)
{
    const int most = swr_get_out_samples(m_resampler.get(), frame ? frame->nb_samples : 0);
    if (most <= 0)
        return success();
    std::uint8_t* channels[kMostChannels];
    for (int i = 0; i < kMostChannels; ++i) {
        m_converted[i].resize(static_cast<std::size_t>(most));
        channels[i] = reinterpret_cast<std::uint8_t*>(m_converted[i].data());
    }
    const std::uint8_t* const* samples = frame ? frame->extended_data : nullptr;
    const int got = swr_convert(m_resampler.get(), channels, most, const_cast<const std::uint8_t**>(samples),
                                frame ? frame->nb_samples : 0);
    if (got < 0)
        return Error{{}, cause::kClipDamaged};
    void* planes[kMostChannels] = {channels[0], channels[1]};
    return av_audio_fifo_write(m_queue.get(), planes, got) < got ? Outcome(m_file.failure(AVERROR(ENOMEM))) : success();
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
    void* planes[kMostChannels] = {m_frame->data[0], m_frame->data[1]};
    av_audio_fifo_read(m_queue.get(), planes, samples);
    av_samples_set_silence(m_frame->data, samples, silence, m_encoder->ch_layout.nb_channels, AV_SAMPLE_FMT_FLTP);
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
    Outcome outcome = m_resampler ? resample(nullptr) : success();
    if (outcome)
        outcome = encodeWhole();
    const auto rest = static_cast<int>(std::min<std::int64_t>(queued(), end() - m_position));
    if (outcome && rest > 0)
        outcome = encode(rest, 0);
    return outcome ? write(nullptr) : outcome;
}

} // namespace lamina
