#include "platform/media/ffmpeg/VideoTrack_p.h"

#include "platform/base/AbandonableWork.h"
#include "platform/base/Causes.h"
#include "platform/media/ffmpeg/ClipPicture_p.h"
#include "platform/media/ffmpeg/FrameScaling_p.h"
#include "platform/media/ffmpeg/H264Encoder_p.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <optional>
#include <utility>

namespace lamina {

namespace {

constexpr int kTicks = 90'000; // a second; the films' usual rates come out whole

} // namespace

Result<std::unique_ptr<VideoTrack>> VideoTrack::add(MovieFile& file, IntSize size, AVRational rate, int crf,
                                                    Content content)
{
    std::unique_ptr<VideoTrack> track(new VideoTrack(file));
    const Outcome opened = track->open(size, rate, crf, content);
    if (!opened)
        return opened.error();
    return track;
}

Outcome VideoTrack::open(IntSize size, AVRational rate, int crf, Content content)
{
    H264Settings settings;
    settings.size = evenSize(size);
    settings.unit = {1, kTicks};
    settings.rate = rate;
    settings.crf = crf;
    settings.use = content == Content::Still ? H264Settings::Use::Still : H264Settings::Use::Export;
    Result<SharedEncoder> encoder = openH264(settings);
    if (!encoder)
        return Error{m_file.path(), encoder.error().cause};
    m_encoder = std::move(*encoder);
    m_track = m_file.addTrack(m_encoder.get());
    return m_track && prepareFrame() ? success() : Outcome(m_file.failure(AVERROR(ENOMEM)));
}

bool VideoTrack::prepareFrame()
{
    const IntSize even{m_encoder->width, m_encoder->height};
    m_scaler = makeScaler(even, AV_PIX_FMT_RGB0, even, AV_PIX_FMT_YUV420P);
    m_frame.reset(av_frame_alloc());
    if (!m_scaler || !m_frame)
        return false;
    constexpr int kUnchanged = 1 << 16;
    const int* matrix = sws_getCoefficients(SWS_CS_ITU709);
    sws_setColorspaceDetails(m_scaler.get(), matrix, 1, matrix, 0, 0, kUnchanged, kUnchanged);
    m_frame->format = AV_PIX_FMT_YUV420P;
    m_frame->width = even.width;
    m_frame->height = even.height;
    if (av_frame_get_buffer(m_frame.get(), 0) < 0)
        return false;
    for (const AVBufferRef* buffer : m_frame->buf) // vector code reads what lies between the rows, too
        if (buffer)
            std::memset(buffer->data, 0, buffer->size);
    return true;
}

/// An odd side gets its last column or row once more.
PictureRows VideoTrack::withEvenSides(const PictureRows& picture)
{
    const IntSize even{m_encoder->width, m_encoder->height};
    if (picture.size == even)
        return picture;
    m_padded.resize(4 * static_cast<std::size_t>(even.width) * static_cast<std::size_t>(even.height));
    const std::size_t width = 4 * static_cast<std::size_t>(picture.size.width);
    const std::size_t paddedWidth = 4 * static_cast<std::size_t>(m_encoder->width);
    std::uint8_t* row = m_padded.data();
    for (int y = 0; y < m_encoder->height; ++y, row += paddedWidth) {
        const auto from = static_cast<std::size_t>(std::min(y, picture.size.height - 1));
        std::memcpy(row, picture.pixels + from * picture.bytesPerRow, width);
        if (paddedWidth > width)
            std::memcpy(row + width, row + width - 4, 4);
    }
    return {m_padded.data(), paddedWidth, even};
}

Outcome VideoTrack::setPicture(const PictureRows& picture)
{
    if (av_frame_make_writable(m_frame.get()) < 0)
        return m_file.failure(AVERROR(ENOMEM));
    const PictureRows even = withEvenSides(picture);
    constexpr int kRowsAtOnce = 128; // a large picture takes longer than a person who cancels likes to wait
    const int strides[4] = {static_cast<int>(even.bytesPerRow), 0, 0, 0};
    for (int y = 0; y < m_encoder->height; y += kRowsAtOnce) {
        if (m_file.isCancelled())
            return m_file.failure(AVERROR_EXIT);
        const std::uint8_t* rows[4] = {even.pixels + static_cast<std::size_t>(y) * even.bytesPerRow, nullptr, nullptr,
                                       nullptr};
        sws_scale(m_scaler.get(), rows, strides, y, std::min(kRowsAtOnce, m_encoder->height - y), m_frame->data,
                  m_frame->linesize);
    }
    return success();
}

Outcome VideoTrack::show(double time, double duration)
{
    constexpr double kLatest = 1e9; // seconds; beyond it a clip's times are nonsense
    const std::int64_t tick = std::llround(std::clamp(time, 0.0, kLatest) * kTicks);
    if (tick <= m_last)
        return success();
    m_last = tick;
    m_duration = std::llround(std::clamp(duration, 1.0 / kTicks, kLatest) * kTicks);
    m_frame->pts = tick;
    return encode(m_frame.get());
}

/// A large picture can take seconds. Who cancels doesn't wait for it: the encoder and the frame are freed when it is
/// done.
Outcome VideoTrack::encode(const AVFrame* frame)
{
    std::shared_ptr<AVFrame> held(frame ? av_frame_clone(frame) : nullptr, FreeFFmpeg());
    if (frame && !held)
        return m_file.failure(AVERROR(ENOMEM));
    auto work = [encoder = m_encoder, held = std::move(held)]() mutable {
        EncodedFrame encoded = encodeFrame(encoder.get(), held.get());
        held.reset(); // so that the next picture can take its place
        return encoded;
    };
    const std::optional<EncodedFrame> encoded = doUnlessCancelled(std::move(work), m_file.cancelled());
    return encoded ? m_file.write(*encoded, m_encoder.get(), m_track, m_duration)
                   : Outcome(m_file.failure(AVERROR_EXIT));
}

Outcome VideoTrack::finish()
{
    return encode(nullptr);
}

} // namespace lamina
