#include "platform/media/ffmpeg/MovieFile_p.h"

#include "platform/base/Causes.h"
#include "platform/files/FileCauses.h"

#include <atomic>
#include <cerrno>
#include <cstddef>
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
    if (const int error = avformat_alloc_output_context2(&m_container, nullptr, "mp4", url.c_str()); error < 0)
        return error;
    m_container->flags |= AVFMT_FLAG_BITEXACT; // names no version of libraries
    m_container->interrupt_callback = {isCancelledCallback, this};
    return avio_open2(&m_container->pb, url.c_str(), AVIO_FLAG_WRITE, &m_container->interrupt_callback, nullptr);
}

AVStream* MovieFile::addTrack(const AVCodecContext* encoder)
{
    AVStream* track = avformat_new_stream(m_container, nullptr);
    if (!track || avcodec_parameters_from_context(track->codecpar, encoder) < 0)
        return nullptr;
    track->time_base = encoder->time_base;
    track->avg_frame_rate = encoder->framerate;
    return track;
}

Outcome MovieFile::begin()
{
    AVDictionary* options = nullptr;
    av_dict_set(&options, "movflags", "+faststart", 0);
    const int error = avformat_write_header(m_container, &options);
    av_dict_free(&options);
    return error < 0 ? Outcome(failure(error)) : success();
}

Outcome MovieFile::write(const EncodedFrame& encoded, const AVCodecContext* encoder, const AVStream* track,
                         std::int64_t duration)
{
    if (isCancelled())
        return failure(AVERROR_EXIT);
    int error = encoded.error;
    for (std::size_t i = 0; error >= 0 && i < encoded.packets.size(); ++i) {
        AVPacket* packet = encoded.packets[i].get();
        if (packet->duration <= 0)
            packet->duration = duration;
        packet->stream_index = track->index;
        av_packet_rescale_ts(packet, encoder->time_base, track->time_base);
        error = av_interleaved_write_frame(m_container, packet);
        if (error >= 0 && m_container->pb->error < 0)
            error = m_container->pb->error;
    }
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
    return Error{m_settings.path, "the video can't be encoded"};
}

int MovieFile::isCancelledCallback(void* self)
{
    return static_cast<MovieFile*>(self)->isCancelled() ? 1 : 0;
}

} // namespace lamina
