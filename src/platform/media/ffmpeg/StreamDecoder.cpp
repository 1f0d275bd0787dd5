#include "platform/media/ffmpeg/StreamDecoder_p.h"

#include "platform/base/Causes.h"

#include <cstdint>
#include <utility>

namespace lamina {

StreamDecoder::StreamDecoder(ClipSource& source, AVStream* stream, CodecContext context, Frame frame)
    : m_source(&source)
    , m_stream(stream)
    , m_context(std::move(context))
    , m_frame(std::move(frame))
    , m_next(source.start())
{
}

Result<StreamDecoder> StreamDecoder::open(ClipSource& source, AVStream* stream, int threads)
{
    const AVCodec* codec = avcodec_find_decoder(stream->codecpar->codec_id);
    if (!codec)
        return Error{{}, "nothing here reads the coding of the clip"};
    CodecContext context(avcodec_alloc_context3(codec));
    Frame frame(av_frame_alloc());
    if (!context || !frame || avcodec_parameters_to_context(context.get(), stream->codecpar) < 0)
        return Error{{}, cause::kNoMemory};
    context->pkt_timebase = stream->time_base;
    context->thread_count = threads;
    context->max_pixels = static_cast<std::int64_t>(source.file().memoryLimit / 4);
    if (avcodec_open2(context.get(), codec, nullptr) < 0)
        return Error{{}, cause::kClipDamaged};
    return StreamDecoder(source, stream, std::move(context), std::move(frame));
}

Outcome StreamDecoder::decode(const AVPacket* packet, const FrameUser& use)
{
    int error = avcodec_send_packet(m_context.get(), packet);
    if (error == AVERROR(EAGAIN)) { // some decoders hold more frames than a packet brings
        Outcome received = receive(use);
        if (!received)
            return received;
        error = avcodec_send_packet(m_context.get(), packet);
    }
    if (error == AVERROR(ENOMEM))
        return Error{{}, cause::kNoMemory};
    m_failures += error < 0 && error != AVERROR_EOF ? 1 : 0;
    return receive(use);
}

Outcome StreamDecoder::receive(const FrameUser& use)
{
    for (;;) {
        if (m_source->isOver())
            return Error{{}, m_source->overCause()};
        const int error = avcodec_receive_frame(m_context.get(), m_frame.get());
        if (error == AVERROR(EAGAIN) || error == AVERROR_EOF)
            return success();
        if (error == AVERROR(ENOMEM))
            return Error{{}, cause::kNoMemory};
        if (error < 0) {
            ++m_failures;
            return success();
        }
        ++m_frames;
        Outcome used = use(*m_frame, timeOf(*m_frame) - m_source->start());
        av_frame_unref(m_frame.get());
        if (!used)
            return used;
    }
}

Outcome StreamDecoder::outcome() const
{
    if (m_frames == 0 || m_failures > m_frames)
        return Error{{}, cause::kClipDamaged};
    return success();
}

double StreamDecoder::frameDuration(const AVFrame& frame) const
{
    if (frame.nb_samples > 0 && frame.sample_rate > 0)
        return static_cast<double>(frame.nb_samples) / frame.sample_rate;
    if (frame.pkt_duration > 0)
        return static_cast<double>(frame.pkt_duration) * av_q2d(m_stream->time_base);
    const AVRational rate = m_stream->avg_frame_rate.num > 0 ? m_stream->avg_frame_rate : m_stream->r_frame_rate;
    constexpr double kUsual = 1.0 / 30;
    return rate.num > 0 && rate.den > 0 ? av_q2d(av_inv_q(rate)) : kUsual;
}

double StreamDecoder::timeOf(const AVFrame& frame)
{
    const double time = frame.best_effort_timestamp != AV_NOPTS_VALUE
                            ? static_cast<double>(frame.best_effort_timestamp) * av_q2d(m_stream->time_base)
                            : m_next;
    m_next = time + frameDuration(frame);
    return time;
}

} // namespace lamina
