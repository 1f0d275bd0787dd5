#include "platform/media/ffmpeg/ClipSource_p.h"

#include "platform/base/Causes.h"
#include "platform/media/ffmpeg/ClipLists_p.h"
#include "platform/media/ffmpeg/ContainerEnd_p.h"

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
    m_container->format_whitelist = av_strdup(kReadContainers);
    m_container->codec_whitelist = av_strdup(readCodecs().c_str());
    if (!m_container->protocol_whitelist || !m_container->format_whitelist || !m_container->codec_whitelist)
        return AVERROR(ENOMEM);
    if (const int error = avformat_open_input(&m_container, "clip", nullptr, nullptr); error < 0)
        return error;
    // Frames are decoded on the way in; what the container claims is judged before.
    for (unsigned i = 0; i < m_container->nb_streams; ++i) {
        if (!accepts(m_container->streams[i]))
            return AVERROR(EFBIG);
        m_tellsDuration.push_back(m_container->streams[i]->duration > 0);
    }
    return avformat_find_stream_info(m_container, nullptr);
}

bool ClipSource::accepts(const AVStream* stream) const
{
    const std::int64_t width = stream->codecpar->width;
    const std::int64_t height = stream->codecpar->height;
    const std::int64_t most = static_cast<std::int64_t>(m_file.memoryLimit / 4);
    return width <= 0 || height <= 0 || width <= most / height;
}

/// The best one that is no cover.
AVStream* ClipSource::findPicture()
{
    const int best = av_find_best_stream(m_container, AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
    if (best >= 0 && !isCoverArt(m_container->streams[best]))
        return m_container->streams[best];
    for (unsigned i = 0; i < m_container->nb_streams; ++i) {
        AVStream* stream = m_container->streams[i];
        if (stream->codecpar->codec_type == AVMEDIA_TYPE_VIDEO && !isCoverArt(stream))
            return stream;
    }
    return nullptr;
}

Outcome ClipSource::chooseTracks(Tracks tracks)
{
    AVStream* picture = findPicture();
    const int sound =
        av_find_best_stream(m_container, AVMEDIA_TYPE_AUDIO, -1, picture ? picture->index : -1, nullptr, 0);
    m_picture = tracks != Tracks::Sound ? picture : nullptr;
    m_sound = tracks != Tracks::Picture && sound >= 0 ? m_container->streams[sound] : nullptr;
    const bool alone = knowsOwnEnds();
    for (unsigned i = 0; i < m_container->nb_streams; ++i) {
        AVStream* stream = m_container->streams[i];
        const bool tells = stream->codecpar->codec_type == AVMEDIA_TYPE_VIDEO ||
                           stream->codecpar->codec_type == AVMEDIA_TYPE_AUDIO ||
                           stream->codecpar->codec_type == AVMEDIA_TYPE_SUBTITLE;
        if (stream != m_picture && stream != m_sound && (alone || !tells || isCoverArt(stream)))
            stream->discard = AVDISCARD_ALL;
    }
    if (tracks == Tracks::Sound)
        return m_sound ? success() : Outcome(Error{{}, "the file holds no sound"});
    if (tracks == Tracks::Any && !m_picture && m_sound)
        return success();
    if (!m_picture || m_picture->codecpar->width <= 0 || m_picture->codecpar->height <= 0)
        return Error{{}, cause::kClipWithoutPicture};
    return accepts(m_picture) ? success() : Outcome(Error{{}, cause::kClipTooLarge});
}

/// Whether the container knows how long this track is, other than by guessing.
bool ClipSource::tellsDuration(const AVStream* stream) const
{
    const auto index = static_cast<std::size_t>(stream->index);
    return index < m_tellsDuration.size() && m_tellsDuration[index];
}

/// Otherwise all tracks must be looked at to see whether the file goes on for as long as it says.
bool ClipSource::knowsOwnEnds() const
{
    return (!m_picture || tellsDuration(m_picture)) && (!m_sound || tellsDuration(m_sound));
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
    if (endsWithinPiece(m_file.descriptor, m_size, m_container->iformat->name))
        return true;
    if (m_container->duration_estimation_method != AVFMT_DURATION_FROM_STREAM)
        return false;
    double end = 0;
    const auto look = [&end](std::int64_t start, std::int64_t duration, AVRational unit) {
        if (duration != AV_NOPTS_VALUE && duration > 0)
            end = std::max(end, seconds(start == AV_NOPTS_VALUE ? 0 : start, unit) + seconds(duration, unit));
    };
    if (knowsOwnEnds()) {
        for (const AVStream* stream : {m_picture, m_sound})
            if (stream)
                look(stream->start_time, stream->duration, stream->time_base);
    } else {
        look(0, m_container->duration, {1, AV_TIME_BASE}); // counted from zero, wherever the tracks begin
    }
    constexpr double kSlip = 0.005; // of the whole; headers are no more exact
    return m_end < end * (1 - kSlip) - 0.5;
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
        note(packet);
        if (stream == m_picture || stream == m_sound) {
            if ((packet->flags & AV_PKT_FLAG_CORRUPT) != 0 && (m_pastEnd || avio_feof(m_bytes) != 0))
                return Error{{}, cause::kTruncated};
            return true;
        }
        av_packet_unref(packet);
    }
}

bool ClipSource::seek(double time)
{
    return seekTo(start() + time);
}

bool ClipSource::seekTo(double time)
{
    const AVStream* stream = m_picture ? m_picture : m_sound;
    constexpr double kMost = 9e18; // below the largest number of 64 bits
    const auto target = static_cast<std::int64_t>(std::clamp(time / av_q2d(stream->time_base), -kMost, kMost));
    return av_seek_frame(m_container, stream->index, target, AVSEEK_FLAG_BACKWARD) >= 0;
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
