#include "platform/media/ffmpeg/ClipSource_p.h"

#include "platform/base/Causes.h"
#include "platform/media/AVAssetReader.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <sys/stat.h>
#include <unistd.h>

namespace lamina {

namespace {

constexpr int kBufferSize = 64 << 10;
constexpr int kMostTracks = 64;

int refuseFile(AVFormatContext*, AVIOContext**, const char*, int, AVDictionary**)
{
    return AVERROR(EPERM);
}

double seconds(std::int64_t time, AVRational unit)
{
    return static_cast<double>(time) * av_q2d(unit);
}

bool isCoverArt(const AVStream* stream)
{
    return (stream->disposition & AV_DISPOSITION_ATTACHED_PIC) != 0;
}

const char* openingFailure(int error)
{
    if (error == AVERROR(EFBIG))
        return cause::kClipTooLarge;
    return error == AVERROR(ENOMEM) ? cause::kNoMemory : cause::kNoClip;
}

} // namespace

ClipSource::ClipSource(const ClipFile& file)
    : m_file(file)
    , m_deadline(file.patience.seconds > 0 ? deadlineAfter(file.patience.seconds) : Deadline())
{
    struct stat status {};
    if (::fstat(file.descriptor, &status) == 0)
        m_size = status.st_size;
}

ClipSource::~ClipSource()
{
    avformat_close_input(&m_container);
    if (m_bytes) {
        av_freep(&m_bytes->buffer);
        avio_context_free(&m_bytes);
    }
}

Result<std::unique_ptr<ClipSource>> ClipSource::open(const ClipFile& file, Tracks tracks)
{
    std::unique_ptr<ClipSource> source(new ClipSource(file));
    if (source->m_size == 0)
        return Error{{}, "the file is empty"};
    if (const int error = source->openContainer(); error < 0)
        return source->isOver() ? Error{{}, source->overCause()} : Error{{}, openingFailure(error)};
    const Outcome chosen = source->chooseTracks(tracks);
    if (!chosen)
        return chosen.error();
    return source;
}

int ClipSource::openContainer()
{
    auto* buffer = static_cast<unsigned char*>(av_malloc(kBufferSize));
    m_bytes = buffer ? avio_alloc_context(buffer, kBufferSize, 0, this, readBytes, nullptr, moveTo) : nullptr;
    if (!m_bytes)
        av_free(buffer);
    m_container = m_bytes ? avformat_alloc_context() : nullptr;
    if (!m_container)
        return AVERROR(ENOMEM);
    m_container->pb = m_bytes;
    m_container->flags |= AVFMT_FLAG_CUSTOM_IO;
    m_container->interrupt_callback = {isOverCallback, this};
    m_container->max_streams = kMostTracks;
    // Containers that list other files open some by this function and some by protocols of their own.
    m_container->io_open = refuseFile;
    m_container->protocol_whitelist = av_strdup("none");
    if (const int error = avformat_open_input(&m_container, "clip", nullptr, nullptr); error < 0)
        return error;
    // Frames are decoded on the way in; what the container claims is judged before.
    for (unsigned i = 0; i < m_container->nb_streams; ++i)
        if (!accepts(m_container->streams[i]))
            return AVERROR(EFBIG);
    return avformat_find_stream_info(m_container, nullptr);
}

bool ClipSource::accepts(const AVStream* stream) const
{
    const std::int64_t width = stream->codecpar->width;
    const std::int64_t height = stream->codecpar->height;
    const std::int64_t most = static_cast<std::int64_t>(m_file.memoryLimit / 4);
    return width <= 0 || height <= 0 || width <= most / height;
}

Outcome ClipSource::chooseTracks(Tracks tracks)
{
    const auto best = [&](AVMediaType type) -> AVStream* {
        const int index = av_find_best_stream(m_container, type, -1, -1, nullptr, 0);
        return index < 0 ? nullptr : m_container->streams[index];
    };
    AVStream* picture = best(AVMEDIA_TYPE_VIDEO);
    m_picture = tracks != Tracks::Sound && picture && !isCoverArt(picture) ? picture : nullptr;
    m_sound = tracks != Tracks::Picture ? best(AVMEDIA_TYPE_AUDIO) : nullptr;
    for (unsigned i = 0; i < m_container->nb_streams; ++i)
        if (m_container->streams[i] != m_picture && m_container->streams[i] != m_sound)
            m_container->streams[i]->discard = AVDISCARD_ALL;
    if (tracks == Tracks::Sound)
        return m_sound ? success() : Outcome(Error{{}, "the file holds no sound"});
    if (!m_picture || m_picture->codecpar->width <= 0 || m_picture->codecpar->height <= 0)
        return Error{{}, cause::kClipWithoutPicture};
    return accepts(m_picture) ? success() : Outcome(Error{{}, cause::kClipTooLarge});
}

Error ClipSource::failure(int error) const
{
    if (isOver())
        return {{}, overCause()};
    if (error == AVERROR(ENOMEM))
        return {{}, cause::kNoMemory};
    return {{}, m_pastEnd ? cause::kTruncated : cause::kClipDamaged};
}

/// A container that tells how long its tracks are, and ends before, was cut off.
bool ClipSource::endsTooEarly() const
{
    const bool told = m_container->duration_estimation_method == AVFMT_DURATION_FROM_STREAM;
    const unsigned known = (m_picture ? 1 : 0) + (m_sound ? 1 : 0);
    if (!told || m_container->duration <= 0 || m_container->nb_streams != known)
        return false;
    const double duration = seconds(m_container->duration, {1, AV_TIME_BASE});
    return m_end < duration * 0.98 - 0.5;
}

void ClipSource::note(const AVPacket* packet)
{
    const AVStream* stream = m_container->streams[packet->stream_index];
    const std::int64_t time = packet->pts != AV_NOPTS_VALUE ? packet->pts : packet->dts;
    if (time == AV_NOPTS_VALUE)
        return;
    m_end = std::max(m_end, seconds(time, stream->time_base) + seconds(packet->duration, stream->time_base));
}

Result<bool> ClipSource::read(AVPacket* packet)
{
    for (;;) {
        if (isOver())
            return Error{{}, overCause()};
        m_pastEnd = false;
        const int error = av_read_frame(m_container, packet);
        if (error == AVERROR_EOF && !isOver())
            return endsTooEarly() ? Result<bool>(Error{{}, cause::kTruncated}) : Result<bool>(false);
        if (error < 0)
            return failure(error);
        const AVStream* stream = m_container->streams[packet->stream_index];
        if (stream == m_picture || stream == m_sound) {
            note(packet);
            if ((packet->flags & AV_PKT_FLAG_CORRUPT) != 0 && m_pastEnd)
                return Error{{}, cause::kTruncated};
            return true;
        }
        av_packet_unref(packet);
    }
}

bool ClipSource::seek(double time)
{
    const double wanted = (start() + time) / av_q2d(m_picture->time_base);
    constexpr double kMost = 9e18; // below the largest number of 64 bits
    const auto target = static_cast<std::int64_t>(std::clamp(wanted, -kMost, kMost));
    return av_seek_frame(m_container, m_picture->index, target, AVSEEK_FLAG_BACKWARD) >= 0;
}

double ClipSource::start() const
{
    if (m_picture && m_picture->start_time != AV_NOPTS_VALUE)
        return seconds(m_picture->start_time, m_picture->time_base);
    return m_container->start_time != AV_NOPTS_VALUE ? seconds(m_container->start_time, {1, AV_TIME_BASE}) : 0;
}

double ClipSource::share() const
{
    const double share = m_container->duration > 0 ? m_end / seconds(m_container->duration, {1, AV_TIME_BASE})
                                                   : static_cast<double>(m_farthest) / static_cast<double>(m_size);
    return std::min(1.0, share);
}

bool ClipSource::isOver() const
{
    const std::atomic<bool>* cancelled = m_file.patience.cancelled;
    return (cancelled && cancelled->load(std::memory_order_relaxed)) ||
           (m_deadline && std::chrono::steady_clock::now() > *m_deadline);
}

std::string ClipSource::overCause() const
{
    const std::atomic<bool>* cancelled = m_file.patience.cancelled;
    return cancelled && cancelled->load() ? cause::kCancelled : cause::kClipTooLong;
}

int ClipSource::readBytes(void* self, std::uint8_t* bytes, int count)
{
    auto& source = *static_cast<ClipSource*>(self);
    if (source.isOver())
        return AVERROR_EXIT;
    ssize_t got = 0;
    do
        got = ::pread(source.m_file.descriptor, bytes, static_cast<std::size_t>(count), source.m_position);
    while (got < 0 && errno == EINTR);
    if (got < 0)
        return AVERROR(errno);
    source.m_pastEnd = source.m_pastEnd || got == 0;
    source.m_position += got;
    source.m_farthest = std::max(source.m_farthest, source.m_position);
    return got == 0 ? AVERROR_EOF : static_cast<int>(got);
}

std::int64_t ClipSource::moveTo(void* self, std::int64_t offset, int whence)
{
    auto& source = *static_cast<ClipSource*>(self);
    if ((whence & AVSEEK_SIZE) != 0)
        return source.m_size;
    switch (whence & ~AVSEEK_FORCE) {
    case SEEK_CUR:
        offset += source.m_position;
        break;
    case SEEK_END:
        offset += source.m_size;
        break;
    default:
        break;
    }
    source.m_pastEnd = source.m_pastEnd || offset > source.m_size;
    if (offset < 0 || offset > source.m_size)
        return AVERROR(EINVAL);
    source.m_position = offset;
    return offset;
}

int ClipSource::isOverCallback(void* self)
{
    return static_cast<ClipSource*>(self)->isOver() ? 1 : 0;
}

} // namespace lamina
