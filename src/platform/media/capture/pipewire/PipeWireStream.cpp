#include "platform/media/capture/pipewire/PipeWireStream_p.h"

#include "platform/media/CMSampleBuffer.h"
#include "platform/media/CVPixelBuffer.h"
#include "platform/media/capture/RawFrame.h"
#include "platform/media/capture/pipewire/PipeWireConnection_p.h"
#include "platform/media/capture/pipewire/PipeWireNode_p.h"
#include "platform/media/capture/pipewire/StreamOffers_p.h"
#include "platform/media/capture/pipewire/VideoModes_p.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstring>
#include <ctime>
#include <spa/buffer/meta.h>
#include <spa/param/audio/format-utils.h>
#include <spa/param/format-utils.h>
#include <spa/param/video/format-utils.h>
#include <utility>

namespace lamina {

namespace {

// Seconds. A node from which nothing comes, or nothing any more, is asked once more.
constexpr double kBeforeNewStart = 1.5;
constexpr double kPatience = 6; // after that
constexpr double kStall = 3;
constexpr double kForNews = 0.2; // that the node is gone is often told a moment later, and is the better word
constexpr std::int64_t kSecond = 1'000'000'000;
/// How far a buffer's own time may lie from now: some count from elsewhere.
constexpr std::int64_t kMostAge = kSecond;
/// Sounds follow one another without a gap unless they are off by this.
constexpr std::int64_t kSoundJump = kSecond / 20;
constexpr std::uint32_t kMostChannels = 64;
constexpr std::uint32_t kMostSampleRate = 768'000;

constexpr const char* kUnreadable = "the camera’s pictures can’t be read";
constexpr const char* kUnplugged = "the camera was unplugged";

std::int64_t now()
{
    return std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

template <class Meta>
const Meta* metaOf(const pw_buffer& buffer, std::uint32_t type)
{
    return static_cast<const Meta*>(spa_buffer_find_meta_data(buffer.buffer, type, sizeof(Meta)));
}

/// By how many degrees clockwise the frame is to be turned: what was done to it is told counter-clockwise.
int rotationOf(const pw_buffer& buffer)
{
    const auto* const meta = metaOf<spa_meta_videotransform>(buffer, SPA_META_VideoTransform);
    return meta ? static_cast<int>(meta->transform % 4) * 90 : 0;
}

YCbCrMatrix matrixOf(spa_video_color_matrix matrix)
{
    switch (matrix) {
    case SPA_VIDEO_COLOR_MATRIX_BT601:
        return YCbCrMatrix::ITU_R_601_4;
    case SPA_VIDEO_COLOR_MATRIX_BT709:
        return YCbCrMatrix::ITU_R_709_2;
    case SPA_VIDEO_COLOR_MATRIX_SMPTE240M:
        return YCbCrMatrix::SMPTE_240M_1995;
    case SPA_VIDEO_COLOR_MATRIX_BT2020:
        return YCbCrMatrix::ITU_R_2020;
    default:
        return YCbCrMatrix::None;
    }
}

/// What of a buffer's block holds content; nothing where it says what can't be.
RawFrame::Plane contentOf(const spa_data& data)
{
    if (!data.data || !data.chunk || (data.chunk->flags & SPA_CHUNK_FLAG_CORRUPTED) != 0 || data.chunk->stride < 0)
        return {};
    const std::uint32_t offset = data.chunk->offset;
    if (offset >= data.maxsize)
        return {};
    return {static_cast<const std::uint8_t*>(data.data) + offset, std::min(data.chunk->size, data.maxsize - offset),
            static_cast<std::size_t>(data.chunk->stride)};
}

/// How many bytes of its rows, and how many rows, stand before the next plane in one block.
std::size_t bytesBefore(const RawFrame& frame, std::size_t plane, std::size_t bytesPerRow)
{
    const auto height = static_cast<std::size_t>(frame.size.height);
    return bytesPerRow * (plane == 0 ? height : (height + 1) / 2);
}

/// Planes that lie in one block, one after the other.
void splitPlanes(RawFrame& frame, std::size_t count)
{
    const RawFrame::Plane whole = frame.planes[0];
    const std::size_t luma = whole.bytesPerRow > 0 ? whole.bytesPerRow : static_cast<std::size_t>(frame.size.width);
    std::size_t begin = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t bytesPerRow = i == 0                                ? luma
                                        : frame.encoding == RawEncoding::NV12 ? (luma + 1) / 2 * 2
                                                                              : (luma + 1) / 2;
        if (begin >= whole.size) {
            frame.planes[i] = {};
            continue;
        }
        frame.planes[i] = {whole.bytes + begin, whole.size - begin, bytesPerRow};
        begin += bytesBefore(frame, i, bytesPerRow);
    }
}

std::size_t planesOf(RawEncoding encoding)
{
    if (encoding == RawEncoding::I420)
        return 3;
    return encoding == RawEncoding::NV12 ? 2 : 1;
}

} // namespace

PipeWireStream::PipeWireStream(PipeWireConnection& connection, const CaptureStreamRequest& request,
                               CaptureStreamHandlers handlers)
    : m_connection(connection)
    , m_request(request)
    , m_handlers(std::move(handlers))
{
    m_connection.add(*this);
}

PipeWireStream::~PipeWireStream()
{
    const LoopLock lock(m_connection.loop());
    m_connection.remove(*this);
    disconnect();
    if (m_timer)
        pw_loop_destroy_source(pw_thread_loop_get_loop(m_connection.loop()), m_timer);
}

void PipeWireStream::connect()
{
    m_timer = pw_loop_add_timer(pw_thread_loop_get_loop(m_connection.loop()), timeOut, this);
    const PipeWireNode* const node = m_connection.node(m_request.node);
    if (m_connection.isLost())
        m_failed = "the camera service stopped";
    else if (!node)
        m_failed = kUnplugged;
    else if (m_type = node->type(), m_name = node->described().name; node->isUnreadable())
        m_failed = kUnreadable;
    else if (!connectToNode())
        m_failed = isVideo() ? "the camera can’t be used" : "the microphone can’t be used";
    setTimer(m_failed ? 0 : kBeforeNewStart);
}

bool PipeWireStream::connectToNode()
{
    static const pw_stream_events events{.version = PW_VERSION_STREAM_EVENTS,
                                         .state_changed = stateChanged,
                                         .param_changed = paramChanged,
                                         .process = process};
    const PipeWireNode& node = *m_connection.node(m_request.node);
    pw_properties* const properties = pw_properties_new(
        PW_KEY_MEDIA_TYPE, isVideo() ? "Video" : "Audio", PW_KEY_MEDIA_CATEGORY, "Capture", PW_KEY_MEDIA_ROLE,
        isVideo() ? "Camera" : "Production", PW_KEY_TARGET_OBJECT, node.serial().c_str(), nullptr);
    m_stream.reset(pw_stream_new(m_connection.core(), "Lamina", properties));
    if (!m_stream)
        return false;
    pw_stream_add_listener(m_stream.get(), &m_hook, &events, this);
    // A node may have lost the buffers of streams that have gone, and keeps them while its format stays what it was.
    StreamOffers offers(m_starts % 2 == 0 ? 30 : 29);
    if (!isVideo()) {
        offers.addSound(node.channels());
    } else {
        const auto mode =
            std::ranges::find_if(node.modes(), [&](const VideoMode& each) { return m_request.format == each.format; });
        if (mode != node.modes().end()) {
            const RawEncoding encoding = *encodingNamed(mode->format.encoding);
            if (m_starts == 0)
                offers.addVideo(encoding, mode->format.size, true, nearestRate(*mode, m_request.frameRate));
            offers.addVideo(encoding, mode->format.size, true, std::nullopt);
        }
        offers.addAnyVideo(mode != node.modes().end() ? mode->format.size : m_request.size);
    }
    const auto flags = static_cast<pw_stream_flags>(PW_STREAM_FLAG_AUTOCONNECT | PW_STREAM_FLAG_MAP_BUFFERS |
                                                    PW_STREAM_FLAG_DONT_RECONNECT);
    auto& params = offers.params();
    return pw_stream_connect(m_stream.get(), PW_DIRECTION_INPUT, PW_ID_ANY, flags, params.data(),
                             static_cast<std::uint32_t>(params.size())) >= 0;
}

/// 0: at once.
void PipeWireStream::setTimer(double seconds)
{
    if (!m_timer)
        return;
    const auto nanoseconds = std::max<std::int64_t>(static_cast<std::int64_t>(seconds * kSecond), 1);
    timespec due = {nanoseconds / kSecond, nanoseconds % kSecond};
    pw_loop_update_timer(pw_thread_loop_get_loop(m_connection.loop()), m_timer, &due, nullptr, false);
}

/// What waits for the moment outside the stream's own events, and for nothing having come for a while.
void PipeWireStream::timeOut(void* data, std::uint64_t)
{
    auto& self = *static_cast<PipeWireStream*>(data);
    if (self.m_isOver)
        return self.disconnect();
    if (self.m_failed)
        return self.end(self.m_failed);
    if (!std::exchange(self.m_hasCome, false))
        return self.startAnew();
    self.m_isStartedAnew = false;
    self.setTimer(kStall);
}

void PipeWireStream::startAnew()
{
    if (std::exchange(m_isStartedAnew, true))
        return end(isVideo() ? "the camera gives no picture" : "the microphone gives no sound");
    ++m_starts;
    disconnect();
    if (!m_connection.node(m_request.node) || !connectToNode())
        return end(isVideo() ? "the camera can’t be used" : "the microphone can’t be used");
    setTimer(kPatience);
}

void PipeWireStream::disconnect()
{
    if (m_stream)
        spa_hook_remove(&m_hook);
    m_stream.reset();
}

void PipeWireStream::end(const char* cause)
{
    if (std::exchange(m_isOver, true))
        return;
    setTimer(0);
    m_handlers.ended({m_name, cause});
}

void PipeWireStream::stateChanged(void* data, pw_stream_state, pw_stream_state state, const char*)
{
    auto& self = *static_cast<PipeWireStream*>(data);
    if (state != PW_STREAM_STATE_ERROR || self.m_isOver || self.m_failed)
        return;
    self.m_failed = self.isVideo() ? "the camera can’t be used" : "the microphone can’t be used";
    self.setTimer(kForNews);
}

void PipeWireStream::paramChanged(void* data, std::uint32_t id, const spa_pod* param)
{
    auto& self = *static_cast<PipeWireStream*>(data);
    if (id != SPA_PARAM_Format || self.m_isOver)
        return;
    self.m_frame.reset();
    self.m_sound = {};
    if (!param)
        return;
    if (self.isVideo())
        self.agreeOnVideo(*param);
    else
        self.agreeOnSound(*param);
}

void PipeWireStream::agreeOnVideo(const spa_pod& format)
{
    std::uint32_t type = 0;
    std::uint32_t subtype = 0;
    spa_format_parse(&format, &type, &subtype);
    RawFrame frame;
    spa_rectangle size = {};
    if (type == SPA_MEDIA_TYPE_video && subtype == SPA_MEDIA_SUBTYPE_mjpg) {
        spa_video_info_mjpg info = {};
        spa_format_video_mjpg_parse(&format, &info);
        frame.encoding = RawEncoding::MJPG;
        size = info.size;
    } else {
        spa_video_info_raw info = {};
        spa_format_video_raw_parse(&format, &info);
        const auto encoding = encodingOfVideoFormat(info.format);
        if (type != SPA_MEDIA_TYPE_video || subtype != SPA_MEDIA_SUBTYPE_raw || !encoding)
            return end(kUnreadable);
        frame.encoding = *encoding;
        frame.matrix = matrixOf(info.color_matrix);
        frame.isFullRange = info.color_range == SPA_VIDEO_COLOR_RANGE_0_255;
        size = info.size;
    }
    constexpr auto kMost = static_cast<std::uint32_t>(kLargestFrameSide) + 1;
    frame.size = {static_cast<int>(std::min(size.width, kMost)), static_cast<int>(std::min(size.height, kMost))};
    if (!isFrameSize(frame.size))
        return end(kUnreadable);
    m_frame = frame;
    StreamOffers offers;
    offers.addBuffers();
    pw_stream_update_params(m_stream.get(), offers.params().data(), static_cast<std::uint32_t>(offers.params().size()));
}

void PipeWireStream::agreeOnSound(const spa_pod& format)
{
    std::uint32_t type = 0;
    std::uint32_t subtype = 0;
    spa_format_parse(&format, &type, &subtype);
    spa_audio_info_raw info = {};
    spa_format_audio_raw_parse(&format, &info);
    if (type != SPA_MEDIA_TYPE_audio || subtype != SPA_MEDIA_SUBTYPE_raw || info.format != SPA_AUDIO_FORMAT_F32 ||
        info.channels == 0 || info.channels > kMostChannels || info.rate == 0 || info.rate > kMostSampleRate)
        return end("the microphone’s sound can’t be read");
    m_sound = info;
}

void PipeWireStream::process(void* data)
{
    auto& self = *static_cast<PipeWireStream*>(data);
    if (self.isVideo())
        self.takeFrames();
    else
        self.takeSound();
}

/// The latest alone.
void PipeWireStream::takeFrames()
{
    pw_buffer* latest = nullptr;
    while (pw_buffer* const next = pw_stream_dequeue_buffer(m_stream.get())) {
        if (latest)
            pw_stream_queue_buffer(m_stream.get(), latest);
        latest = next;
    }
    if (!latest)
        return;
    if (!m_isOver && m_frame)
        takeFrame(*latest);
    pw_stream_queue_buffer(m_stream.get(), latest);
}

void PipeWireStream::takeFrame(const pw_buffer& buffer)
{
    const auto* const header = metaOf<spa_meta_header>(buffer, SPA_META_Header);
    if (header && (header->flags & SPA_META_HEADER_FLAG_CORRUPTED) != 0)
        return;
    RawFrame frame = *m_frame;
    const std::size_t count = planesOf(frame.encoding);
    const spa_buffer& blocks = *buffer.buffer;
    for (std::size_t i = 0; i < std::min<std::size_t>(count, blocks.n_datas); ++i)
        frame.planes[i] = contentOf(blocks.datas[i]);
    if (blocks.n_datas == 1 && count > 1)
        splitPlanes(frame, count);
    if (frame.planes[0].size == 0)
        return;
    const std::int64_t present = now();
    const bool hasTime = header && header->pts > 0 && std::abs(header->pts - present) < kMostAge;
    m_connection.setRotationOfFrames(m_request.node, rotationOf(buffer));
    if (m_handlers.frame(frame, hasTime ? header->pts : present))
        m_hasCome = true;
}

void PipeWireStream::takeSound()
{
    while (pw_buffer* const buffer = pw_stream_dequeue_buffer(m_stream.get())) {
        if (!m_isOver && m_sound.channels > 0 && buffer->buffer->n_datas > 0)
            takeSound(*buffer);
        pw_stream_queue_buffer(m_stream.get(), buffer);
    }
}

void PipeWireStream::takeSound(const pw_buffer& buffer)
{
    const RawFrame::Plane content = contentOf(buffer.buffer->datas[0]);
    const std::size_t moments = content.size / (sizeof(float) * m_sound.channels);
    if (moments == 0)
        return;
    auto sound = std::make_shared<AudioBuffer>();
    sound->sampleRate = static_cast<int>(m_sound.rate);
    sound->channels = static_cast<int>(m_sound.channels);
    sound->samples.resize(moments * m_sound.channels);
    std::memcpy(sound->samples.data(), content.bytes, sound->samples.size() * sizeof(float));
    const auto duration = static_cast<std::int64_t>(moments) * kSecond / m_sound.rate;
    std::int64_t begin = now() - duration;
    if (m_soundEnd > 0 && std::abs(begin - m_soundEnd) < kSoundJump)
        begin = m_soundEnd;
    m_soundEnd = begin + duration;
    m_hasCome = true;
    m_handlers.sound(std::move(sound), begin);
}

} // namespace lamina
