#include "TestCameraNode.h"

#include "platform/image/codecs/ImageSaving.h"
#include "platform/image/pixels/PixelBuffer.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/media/capture/pipewire/PipeWireHandles_p.h"
#include "platform/media/capture/pipewire/VideoModes_p.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <cstring>
#include <ctime>
#include <gtest/gtest.h>
#include <mutex>
#include <spa/buffer/meta.h>
#include <spa/param/buffers.h>
#include <spa/param/video/format-utils.h>
#include <spa/pod/builder.h>
#include <spa/support/loop.h>
#include <utility>

namespace lamina::test {

namespace {

using Color = std::array<double, 3>;

Color colorAt(const CGImage& picture, int x, int y)
{
    const std::uint8_t* const pixel = picture.row(std::min(y, picture.height() - 1)) +
                                      std::size_t{4} * static_cast<std::size_t>(std::min(x, picture.width() - 1));
    return {double(pixel[0]), double(pixel[1]), double(pixel[2])};
}

std::uint8_t byteOf(double value)
{
    return static_cast<std::uint8_t>(std::clamp(value + 0.5, 0.0, 255.0));
}

double lumaOf(const Color& color)
{
    return 0.299 * color[0] + 0.587 * color[1] + 0.114 * color[2];
}

std::uint8_t lumaByte(const CGImage& picture, int x, int y)
{
    return byteOf(16 + lumaOf(colorAt(picture, x, y)) * 219 / 255);
}

/// Cb, or Cr, of the mean of two by `rows` pixels.
std::uint8_t chromaByte(const CGImage& picture, int x, int y, int rows, bool isCr)
{
    Color mean = {};
    for (int i = 0; i < 2 * rows; ++i) {
        for (std::size_t c = 0; c < 3; ++c)
            mean[c] += colorAt(picture, x + i % 2, y + i / 2)[c] / (2 * rows);
    }
    const double difference = isCr ? (mean[0] - lumaOf(mean)) / 1.402 : (mean[2] - lumaOf(mean)) / 1.772;
    return byteOf(128 + difference * 224 / 255);
}

} // namespace

std::vector<std::uint8_t> rawBytesOf(const CGImage& picture, RawEncoding encoding)
{
    std::vector<std::uint8_t> bytes;
    if (encoding == RawEncoding::MJPG)
        return encodeImage(UIImage(picture), {.uti = "public.jpeg", .quality = 0.95}, {}).value();
    const auto each = [&](int stepX, int stepY, auto&& put) {
        for (int y = 0; y < picture.height(); y += stepY) {
            for (int x = 0; x < picture.width(); x += stepX)
                put(x, y);
        }
    };
    const auto luma = [&](int x, int y) { bytes.push_back(lumaByte(picture, x, y)); };
    const auto chroma = [&](int x, int y, int rows, bool isCr) {
        bytes.push_back(chromaByte(picture, x, y, rows, isCr));
    };
    const auto colors = [&](std::initializer_list<std::size_t> order, bool hasFourth) {
        each(1, 1, [&](int x, int y) {
            for (const std::size_t c : order)
                bytes.push_back(byteOf(colorAt(picture, x, y)[c] - 0.5));
            if (hasFourth)
                bytes.push_back(7); // which nobody looks at
        });
    };
    switch (encoding) {
    case RawEncoding::GRAY8:
        each(1, 1, luma);
        break;
    case RawEncoding::NV12:
        each(1, 1, luma);
        each(2, 2, [&](int x, int y) { chroma(x, y, 2, false), chroma(x, y, 2, true); });
        break;
    case RawEncoding::I420:
        each(1, 1, luma);
        for (const bool isCr : {false, true})
            each(2, 2, [&](int x, int y) { chroma(x, y, 2, isCr); });
        break;
    case RawEncoding::YUY2:
        each(2, 1, [&](int x, int y) { luma(x, y), chroma(x, y, 1, false), luma(x + 1, y), chroma(x, y, 1, true); });
        break;
    case RawEncoding::UYVY:
        each(2, 1, [&](int x, int y) { chroma(x, y, 1, false), luma(x, y), chroma(x, y, 1, true), luma(x + 1, y); });
        break;
    case RawEncoding::BGRx:
    case RawEncoding::BGRA:
        colors({2, 1, 0}, true);
        break;
    case RawEncoding::RGBx:
    case RawEncoding::RGBA:
        colors({0, 1, 2}, true);
        break;
    case RawEncoding::BGR:
        colors({2, 1, 0}, false);
        break;
    default:
        colors({0, 1, 2}, false);
    }
    return bytes;
}

struct TestCameraNode::State {
    TestCameraSettings settings;
    std::mutex mutex; ///< for the picture and what is drawn of it
    std::vector<std::uint8_t> drawn;
    std::atomic<std::uint64_t> frames{0};
    std::atomic<IntSize> size{IntSize{}};
    PipeWireHandle<pw_thread_loop> loop;
    PipeWireHandle<pw_context> context;
    PipeWireHandle<pw_core> core;
    PipeWireHandle<pw_stream> stream;
    spa_hook hook = {};
    spa_source* timer = nullptr;

    bool connect();
    void agree(const spa_pod& format);
    void draw(pw_buffer& buffer);
    void drawPicture(TestCameraFrame& frame);
    void setTimer(bool runs);

    static State& of(void* data) { return *static_cast<State*>(data); }
    static void stateChanged(void* data, pw_stream_state, pw_stream_state state, const char*)
    {
        of(data).setTimer(state == PW_STREAM_STATE_STREAMING);
    }
    static void paramChanged(void* data, std::uint32_t id, const spa_pod* param)
    {
        if (id == SPA_PARAM_Format && param)
            of(data).agree(*param);
    }
    static void process(void* data)
    {
        State& self = of(data);
        if (pw_buffer* const buffer = pw_stream_dequeue_buffer(self.stream.get())) {
            self.draw(*buffer);
            pw_stream_queue_buffer(self.stream.get(), buffer);
        }
    }
    static void tick(void* data, std::uint64_t) { pw_stream_trigger_process(of(data).stream.get()); }
};

void TestCameraNode::State::setTimer(bool runs)
{
    constexpr long kSecond = 1'000'000'000;
    const timespec first = {0, runs ? 1 : 0};
    const timespec then = {0, runs ? std::min(kSecond / settings.frameRate, kSecond - 1) : 0};
    pw_loop_update_timer(pw_thread_loop_get_loop(loop.get()), timer, const_cast<timespec*>(&first),
                         const_cast<timespec*>(&then), false);
    if (!runs)
        size = IntSize{};
}

bool TestCameraNode::State::connect()
{
    static const pw_stream_events events{.version = PW_VERSION_STREAM_EVENTS,
                                         .state_changed = stateChanged,
                                         .param_changed = paramChanged,
                                         .process = process};
    pw_init(nullptr, nullptr);
    loop.reset(pw_thread_loop_new("test camera", nullptr));
    context.reset(pw_context_new(pw_thread_loop_get_loop(loop.get()), nullptr, 0));
    core.reset(pw_context_connect(context.get(), nullptr, 0));
    if (!core)
        return false;
    pw_properties* const properties =
        pw_properties_new(PW_KEY_MEDIA_CLASS, "Video/Source", PW_KEY_MEDIA_ROLE, "Camera", PW_KEY_NODE_NAME,
                          settings.name.c_str(), PW_KEY_NODE_DESCRIPTION, settings.description.c_str(), nullptr);
    pw_properties_setf(properties, PW_KEY_PRIORITY_SESSION, "%d", settings.priority);
    if (!settings.location.empty())
        pw_properties_set(properties, "api.libcamera.location", settings.location.c_str());
    if (settings.mountRotation != 0)
        pw_properties_setf(properties, "api.libcamera.rotation", "%d", settings.mountRotation);
    stream.reset(pw_stream_new(core.get(), settings.name.c_str(), properties));
    pw_stream_add_listener(stream.get(), &hook, &events, this);
    timer = pw_loop_add_timer(pw_thread_loop_get_loop(loop.get()), tick, this);

    std::array<std::uint8_t, 2048> memory;
    spa_pod_builder builder = {};
    spa_pod_builder_init(&builder, memory.data(), static_cast<std::uint32_t>(memory.size()));
    spa_pod_frame object;
    spa_pod_frame choice;
    const auto format = videoFormatOf(settings.encoding);
    spa_pod_builder_push_object(&builder, &object, SPA_TYPE_OBJECT_Format, SPA_PARAM_EnumFormat);
    spa_pod_builder_prop(&builder, SPA_FORMAT_mediaType, 0);
    spa_pod_builder_id(&builder, SPA_MEDIA_TYPE_video);
    spa_pod_builder_prop(&builder, SPA_FORMAT_mediaSubtype, 0);
    spa_pod_builder_id(&builder, format ? SPA_MEDIA_SUBTYPE_raw : SPA_MEDIA_SUBTYPE_mjpg);
    if (format) {
        spa_pod_builder_prop(&builder, SPA_FORMAT_VIDEO_format, 0);
        spa_pod_builder_id(&builder, *format);
    }
    spa_pod_builder_prop(&builder, SPA_FORMAT_VIDEO_size, 0);
    spa_pod_builder_push_choice(&builder, &choice, SPA_CHOICE_Enum, 0);
    const auto put = [&](IntSize each) {
        spa_pod_builder_rectangle(&builder, static_cast<std::uint32_t>(each.width),
                                  static_cast<std::uint32_t>(each.height));
    };
    put(settings.sizes.front());
    std::ranges::for_each(settings.sizes, put);
    spa_pod_builder_pop(&builder, &choice);
    spa_pod_builder_prop(&builder, SPA_FORMAT_VIDEO_framerate, 0);
    spa_pod_builder_fraction(&builder, static_cast<std::uint32_t>(settings.frameRate), 1);
    const auto* param = static_cast<const spa_pod*>(spa_pod_builder_pop(&builder, &object));
    const auto flags = static_cast<pw_stream_flags>(PW_STREAM_FLAG_DRIVER | PW_STREAM_FLAG_MAP_BUFFERS);
    return pw_stream_connect(stream.get(), PW_DIRECTION_OUTPUT, PW_ID_ANY, flags, &param, 1) >= 0 &&
           pw_thread_loop_start(loop.get()) >= 0;
}

void TestCameraNode::State::agree(const spa_pod& format)
{
    spa_rectangle agreed = {};
    if (videoFormatOf(settings.encoding)) {
        spa_video_info_raw info = {};
        spa_format_video_raw_parse(&format, &info);
        agreed = info.size;
    } else {
        spa_video_info_mjpg info = {};
        spa_format_video_mjpg_parse(&format, &info);
        agreed = info.size;
    }
    const IntSize now{static_cast<int>(agreed.width), static_cast<int>(agreed.height)};
    size = now;
    {
        const std::scoped_lock lock(mutex);
        drawn.clear();
    }
    std::array<std::uint8_t, 2048> memory;
    spa_pod_builder builder = {};
    spa_pod_builder_init(&builder, memory.data(), static_cast<std::uint32_t>(memory.size()));
    std::vector<const spa_pod*> params;
    spa_pod_frame object;
    const auto end = [&] { params.push_back(static_cast<const spa_pod*>(spa_pod_builder_pop(&builder, &object))); };
    spa_pod_builder_push_object(&builder, &object, SPA_TYPE_OBJECT_ParamBuffers, SPA_PARAM_Buffers);
    spa_pod_builder_prop(&builder, SPA_PARAM_BUFFERS_blocks, 0);
    spa_pod_builder_int(&builder, 1);
    spa_pod_builder_prop(&builder, SPA_PARAM_BUFFERS_size, 0);
    spa_pod_builder_int(&builder, std::max(4 * (now.width + 1) * (now.height + 1), 4096));
    spa_pod_builder_prop(&builder, SPA_PARAM_BUFFERS_stride, 0);
    spa_pod_builder_int(&builder, now.width);
    end();
    const std::pair<std::uint32_t, std::size_t> kinds[] = {{SPA_META_Header, sizeof(spa_meta_header)},
                                                           {SPA_META_VideoTransform, sizeof(spa_meta_videotransform)}};
    for (const auto& [kind, bytes] : kinds) {
        spa_pod_builder_push_object(&builder, &object, SPA_TYPE_OBJECT_ParamMeta, SPA_PARAM_Meta);
        spa_pod_builder_prop(&builder, SPA_PARAM_META_type, 0);
        spa_pod_builder_id(&builder, kind);
        spa_pod_builder_prop(&builder, SPA_PARAM_META_size, 0);
        spa_pod_builder_int(&builder, static_cast<int>(bytes));
        end();
    }
    pw_stream_update_params(stream.get(), params.data(), static_cast<std::uint32_t>(params.size()));
}

/// The picture is turned into the camera's pixels once for a size.
void TestCameraNode::State::drawPicture(TestCameraFrame& frame)
{
    const std::scoped_lock lock(mutex);
    if (drawn.empty()) {
        const auto layout = CGImageLayout::rgba(frame.size.width, frame.size.height, CGImageAlphaInfo::NoneSkipLast);
        PixelBuffer pixels = PixelBuffer::allocate(layout.byteCount());
        std::memset(pixels.data(), 128, pixels.size());
        for (int y = 0; settings.picture && y < frame.size.height; ++y) {
            const std::uint8_t* const row = settings.picture.row(y * settings.picture.height() / frame.size.height);
            for (int x = 0; x < frame.size.width; ++x) {
                const int from = x * settings.picture.width() / frame.size.width;
                std::memcpy(pixels.data() + static_cast<std::size_t>(y) * layout.bytesPerRow + 4 * x, row + 4 * from,
                            4);
            }
        }
        drawn = rawBytesOf(CGImage::make(layout, std::move(pixels)), settings.encoding);
    }
    frame.chunkSize = static_cast<std::uint32_t>(std::min(drawn.size(), frame.capacity));
    std::memcpy(frame.bytes, drawn.data(), frame.chunkSize);
}

void TestCameraNode::State::draw(pw_buffer& buffer)
{
    spa_data& data = buffer.buffer->datas[0];
    if (!data.data)
        return;
    TestCameraFrame frame{static_cast<std::uint8_t*>(data.data), data.maxsize, size, frames};
    frame.chunkSize = data.maxsize;
    if (settings.draw)
        settings.draw(frame);
    else
        drawPicture(frame);
    data.chunk->offset = frame.chunkOffset;
    data.chunk->size = frame.chunkSize;
    data.chunk->stride = frame.chunkStride;
    data.chunk->flags = 0;
    auto* const meta = static_cast<spa_meta_videotransform*>(
        spa_buffer_find_meta_data(buffer.buffer, SPA_META_VideoTransform, sizeof(spa_meta_videotransform)));
    if (meta)
        meta->transform = static_cast<std::uint32_t>(settings.transform);
    ++frames;
}

TestCameraNode::TestCameraNode(TestCameraSettings settings)
    : m_state(std::make_unique<State>())
{
    m_state->settings = std::move(settings);
    EXPECT_TRUE(m_state->connect()) << "the test's camera can't be served";
}

TestCameraNode::~TestCameraNode()
{
    if (m_state->loop)
        pw_thread_loop_stop(m_state->loop.get());
    if (m_state->stream)
        spa_hook_remove(&m_state->hook);
}

void TestCameraNode::setPicture(const CGImage& picture)
{
    const std::scoped_lock lock(m_state->mutex);
    m_state->settings.picture = picture;
    m_state->drawn.clear();
}

std::uint64_t TestCameraNode::frames() const
{
    return m_state->frames;
}

IntSize TestCameraNode::size() const
{
    return m_state->size;
}

} // namespace lamina::test
