#include "platform/media/ffmpeg/MovieFile_p.h"

#include "platform/base/Causes.h"
#include "platform/files/FileCauses.h"
#include "platform/media/ffmpeg/H264Encoder_p.h"

#include <atomic>
#include <cerrno>
#include <cmath>
#include <cstddef>
#include <string_view>
#include <utility>

namespace lamina {

EncodedFrame encodeFrame(AVCodecContext* encoder, const AVFrame* frame)
{
    EncodedFrame encoded;
    encoded.error = avcodec_send_frame(encoder, frame);
    while (encoded.error >= 0) {
        Packet packet(av_packet_alloc());
        encoded.error = packet ? avcodec_receive_packet(encoder, packet.get()) : AVERROR(ENOMEM);
        if (encoded.error >= 0)
            encoded.packets.push_back(std::move(packet));
    }
    if (encoded.error == AVERROR(EAGAIN) || encoded.error == AVERROR_EOF)
        encoded.error = 0;
    return encoded;
}

MovieFile::MovieFile(const FilmSettings& settings)
    : m_settings(settings)
{
}

MovieFile::~MovieFile()
{
    if (!m_container)
        return;
    avio_closep(&m_container->pb);
    avformat_free_context(m_container);
}

Result<std::unique_ptr<MovieFile>> MovieFile::open(const FilmSettings& settings)
{
    std::unique_ptr<MovieFile> file(new MovieFile(settings));
    if (const int error = file->openOutput(); error < 0)
        return file->failure(error);
    return file;
}

int MovieFile::openOutput()
{
    const std::string url = "file:" + m_settings.path;
    if (const int error = avformat_alloc_output_context2(&m_container, nullptr, m_settings.container, url.c_str());
        error < 0)
        return error;
    m_container->flags |= AVFMT_FLAG_BITEXACT; // names no version of libraries
    for (const auto& [name, value] : m_settings.metadata)
        av_dict_set(&m_container->metadata, name.c_str(), value.c_str(), 0);
    m_container->interrupt_callback = {isCancelledCallback, this};
    return avio_open2(&m_container->pb, url.c_str(), AVIO_FLAG_WRITE, &m_container->interrupt_callback, nullptr);
}

AVStream* MovieFile::addTrack(const AVCodecContext* encoder)
{
    AVStream* track = reserveTrack();
    return track && describe(track, encoder) ? track : nullptr;
}

AVStream* MovieFile::reserveTrack()
{
    return avformat_new_stream(m_container, nullptr);
}

bool MovieFile::describe(AVStream* track, const AVCodecContext* encoder)
{
    track->time_base = encoder->time_base;
    track->avg_frame_rate = encoder->framerate;
    return avcodec_parameters_from_context(track->codecpar, encoder) >= 0;
}

bool MovieFile::isMatroska() const
{
    return std::string_view(m_settings.container) == "matroska";
}

/// What lies before the beginning wakes the decoder alone. Matroska has no way to say so but for Opus: it would be
/// heard.
bool MovieFile::isUnheard(const AVPacket& packet, AVCodecID codec) const
{
    return isMatroska() && codec != AV_CODEC_ID_OPUS && packet.pts != AV_NOPTS_VALUE &&
           packet.pts + packet.duration <= 0;
}

int MovieFile::writeHeader()
{
    AVDictionary* options = nullptr;
    const bool matroska = isMatroska();
    if (m_settings.fragmentSeconds > 0) {
        constexpr double kMicroseconds = 1e6;
        constexpr double kMilliseconds = 1e3;
        m_container->flags |= AVFMT_FLAG_FLUSH_PACKETS; // what ends the process leaves what was written
        if (matroska)
            av_dict_set_int(&options, "cluster_time_limit", std::llround(m_settings.fragmentSeconds * kMilliseconds),
                            0);
        else
            av_dict_set_int(&options, "frag_duration", std::llround(m_settings.fragmentSeconds * kMicroseconds), 0);
    }
    if (matroska) {
        m_container->avoid_negative_ts = AVFMT_AVOID_NEG_TS_DISABLED; // sound that begins early moves no picture
        av_dict_set(&options, "cues_to_front", "1", 0);
    }
    if (!matroska) // of fragments the index waits for the first of them, so that it can tell where the tracks begin
        av_dict_set(&options, "movflags", m_settings.fragmentSeconds > 0 ? "+delay_moov" : "+faststart", 0);
    const int error = avformat_write_header(m_container, &options);
    av_dict_free(&options);
    return error;
}

Outcome MovieFile::begin()
{
    if (const int error = writeHeader(); error < 0)
        return failure(error);
    m_hasBegun = true;
    Outcome outcome = success();
    for (Packet& packet : std::exchange(m_waiting, {})) {
        const AVStream* track = m_container->streams[packet->stream_index];
        const AVRational unit = packet->time_base;
        if (outcome)
            outcome = write(std::move(packet), unit, track);
    }
    return outcome;
}

Outcome MovieFile::write(const EncodedFrame& encoded, const AVCodecContext* encoder, const AVStream* track,
                         std::int64_t duration)
{
    Outcome outcome = encoded.error < 0 ? Outcome(failure(encoded.error)) : success();
    for (std::size_t i = 0; outcome && i < encoded.packets.size(); ++i) {
        Packet packet(av_packet_clone(encoded.packets[i].get()));
        if (!packet)
            return failure(AVERROR(ENOMEM));
        if (packet->duration <= 0)
            packet->duration = duration;
        outcome = write(std::move(packet), encoder->time_base, track);
    }
    return outcome;
}

Outcome MovieFile::write(Packet packet, AVRational unit, const AVStream* track)
{
    if (isCancelled())
        return failure(AVERROR_EXIT);
    packet->stream_index = track->index;
    packet->time_base = unit;
    if (!m_hasBegun) {
        m_waiting.push_back(std::move(packet));
        return success();
    }
    if (isUnheard(*packet, track->codecpar->codec_id))
        return success();
    av_packet_rescale_ts(packet.get(), unit, track->time_base);
    int error = av_interleaved_write_frame(m_container, packet.get());
    if (error >= 0 && m_container->pb->error < 0)
        error = m_container->pb->error;
    return error < 0 ? Outcome(failure(error)) : success();
}

Outcome MovieFile::finish()
{
    if (const int error = av_write_trailer(m_container); error < 0)
        return failure(error);
    avio_flush(m_container->pb);
    const int error = m_container->pb->error;
    const int closed = avio_closep(&m_container->pb);
    if (error < 0 || closed < 0)
        return failure(error < 0 ? error : closed);
    return isCancelled() ? Outcome(failure(AVERROR_EXIT)) : success();
}

void MovieFile::tell(double share)
{
    if (!m_settings.progress || !(share > m_told) || share > 1)
        return;
    m_told = share;
    (*m_settings.progress)(share);
}

bool MovieFile::isCancelled() const
{
    return m_settings.cancelled && m_settings.cancelled->load(std::memory_order_relaxed);
}

Error MovieFile::failure(int error) const
{
    if (isCancelled() || error == AVERROR_EXIT)
        return {m_settings.path, cause::kCancelled};
    if (error == AVERROR(ENOMEM))
        return {m_settings.path, cause::kNoMemory};
    constexpr int kLargestErrno = 4095; // FFmpeg's own errors are letters and lie far below
    if (error < 0 && error >= -kLargestErrno && error != AVERROR(EINVAL)) // FFmpeg says that of what it is given
        return {m_settings.path, writingFailure(-error)};
    return Error{m_settings.path, cause::kCantEncode};
}

int MovieFile::isCancelledCallback(void* self)
{
    return static_cast<MovieFile*>(self)->isCancelled() ? 1 : 0;
}

} // namespace lamina
