#include "platform/media/ffmpeg/StreamDecoder_p.h"

#include "platform/base/Causes.h"
#include "platform/media/ffmpeg/ClipLists_p.h"

#include <cmath>
#include <cstdint>
#include <string>
#include <utility>

namespace lamina {

StreamDecoder::StreamDecoder(ClipSource& source, AVStream* stream, CodecContext context, Frame frame, Packet packet)
    : m_source(&source)
    , m_stream(stream)
    , m_context(std::move(context))
    , m_frame(std::move(frame))
    , m_packet(std::move(packet))
    , m_next(source.start())
{
}

Result<StreamDecoder> StreamDecoder::open(ClipSource& source, AVStream* stream, int threads)
{
    const AVCodec* codec =
        readsCodec(stream->codecpar->codec_id) ? avcodec_find_decoder(stream->codecpar->codec_id) : nullptr;
    if (!codec)
        return Error{{},
                     std::string("nothing here reads the coding of the clip: ") +
                         avcodec_get_name(stream->codecpar->codec_id)};
    CodecContext context(avcodec_alloc_context3(codec));
    Frame frame(av_frame_alloc());
    Packet packet(av_packet_alloc());
    if (!context || !frame || !packet || avcodec_parameters_to_context(context.get(), stream->codecpar) < 0)
        return Error{{}, cause::kNoMemory};
    context->pkt_timebase = stream->time_base;
    context->thread_count = threads;
    context->codec_whitelist = av_strdup(readCodecs().c_str());
    if (!context->codec_whitelist)
        return Error{{}, cause::kNoMemory};
    context->max_pixels = static_cast<std::int64_t>(source.file().memoryLimit / 4);
    if (avcodec_open2(context.get(), codec, nullptr) < 0)
        return Error{{}, cause::kClipDamaged};
    return StreamDecoder(source, stream, std::move(context), std::move(frame), std::move(packet));
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
        const Result<Received> received = receiveOne();
        if (!received)
            return received.error();
        if (*received != Received::One)
            return success();
        Outcome used = use(*m_frame, seconds(m_ticks) - m_source->start());
        av_frame_unref(m_frame.get());
        if (!used)
            return used;
    }
}

Result<StreamDecoder::Received> StreamDecoder::receiveOne()
{
    if (m_source->isOver())
        return Error{{}, m_source->overCause()};
    const int error = avcodec_receive_frame(m_context.get(), m_frame.get());
    if (error == AVERROR_EOF)
        return Received::End;
    if (error == AVERROR(ENOMEM))
        return Error{{}, cause::kNoMemory};
    if (error < 0) {
        m_failures += error != AVERROR(EAGAIN) ? 1 : 0;
        return Received::Nothing;
    }
    ++m_frames;
    noteTime();
    return Received::One;
}

Result<Frame> StreamDecoder::next()
{
    for (;;) {
        const Result<Received> received = receiveOne();
        if (!received)
            return received.error();
        if (*received == Received::One) {
            Frame spare(av_frame_alloc());
            if (!spare)
                return Error{{}, cause::kNoMemory};
            m_frame.swap(spare);
            return spare;
        }
        if (*received == Received::End)
            return m_readingError ? Result<Frame>(*m_readingError) : Result<Frame>(Frame());
        if (Outcome fed = m_drains ? success() : feed(); !fed)
            return fed.error();
    }
}

Outcome StreamDecoder::feed()
{
    const Result<bool> read = m_source->read(m_packet.get());
    if (!read && m_source->isOver())
        return read.error();
    if (!read)
        m_readingError = read.error();
    m_drains = !read || !*read;
    if (!m_drains && m_packet->stream_index != m_stream->index) {
        av_packet_unref(m_packet.get());
        return success();
    }
    const int error = avcodec_send_packet(m_context.get(), m_drains ? nullptr : m_packet.get());
    av_packet_unref(m_packet.get());
    if (error == AVERROR(ENOMEM))
        return Error{{}, cause::kNoMemory};
    m_failures += error < 0 && error != AVERROR_EOF ? 1 : 0;
    return success();
}

void StreamDecoder::restart()
{
    avcodec_flush_buffers(m_context.get());
    m_drains = false;
    m_readingError.reset();
    m_follows = false;
    m_shift = 0;
}

Outcome StreamDecoder::outcome() const
{
    if (m_frames == 0 || isDamaged())
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

double StreamDecoder::seconds(std::int64_t ticks) const
{
    return static_cast<double>(ticks) * av_q2d(m_stream->time_base);
}

void StreamDecoder::noteTime()
{
    const double length = frameDuration(*m_frame);
    const bool told = m_frame->best_effort_timestamp != AV_NOPTS_VALUE;
    double time = told ? seconds(m_frame->best_effort_timestamp) + m_shift : m_next;
    // Where recordings were joined the clock may begin anew; time goes on.
    constexpr double kBegunAnew = 1;
    const bool anew = told && m_follows && time < m_next - kBegunAnew - 2 * length;
    if (anew) {
        m_shift += m_next - time;
        time = m_next;
    }
    m_ticks = told && m_shift == 0 ? m_frame->best_effort_timestamp : std::llround(time / av_q2d(m_stream->time_base));
    m_next = time + length;
    m_follows = true;
}

} // namespace lamina
