#include "platform/media/ffmpeg/PixelBufferMaking_p.h"

#include "platform/base/Causes.h"

extern "C" {
#include <libavutil/imgutils.h>
#include <libavutil/pixdesc.h>
}

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <utility>

namespace lamina {

namespace {

ScaledKind scaledKind(CVPixelFormat format, IntSize size)
{
    switch (format) {
    case CVPixelFormat::BGRA:
        return {.format = AV_PIX_FMT_BGRA, .size = size, .fullRange = true};
    case CVPixelFormat::BiPlanar420VideoRange:
        return {.format = AV_PIX_FMT_NV12, .size = size, .fullRange = false};
    case CVPixelFormat::BiPlanar420FullRange:
        return {.format = AV_PIX_FMT_NV12, .size = size, .fullRange = true};
    default:
        return {.format = AV_PIX_FMT_YUV420P, .size = size, .fullRange = false};
    }
}

bool isPlain420(const AVFrame& frame)
{
    return frame.format == AV_PIX_FMT_YUV420P || frame.format == AV_PIX_FMT_YUVJ420P;
}

bool hasAlpha(const AVFrame& frame)
{
    const AVPixFmtDescriptor* kind = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
    return kind && (kind->flags & (AV_PIX_FMT_FLAG_ALPHA | AV_PIX_FMT_FLAG_PAL)) != 0;
}

void makeOpaque(const CVPixelBuffer::Plane& plane)
{
    for (int y = 0; y < plane.size.height; ++y) {
        std::uint8_t* row = plane.bytes + static_cast<std::size_t>(y) * plane.bytesPerRow;
        for (int x = 0; x < plane.size.width; ++x)
            row[4 * x + 3] = 255;
    }
}

/// How far rows must stand apart for the scaler, which writes some samples at once.
constexpr std::size_t kRowUnit = 64;

std::size_t roomyStride(std::size_t bytes)
{
    return (bytes + kRowUnit - 1) / kRowUnit * kRowUnit;
}

std::size_t rowBytes(const CVPixelBuffer& buffer, const CVPixelBuffer::Plane& plane)
{
    const std::size_t bytes = buffer.pixelFormat() == CVPixelFormat::BGRA ? 4
                              : buffer.planes().data() == &plane          ? 1
                                                                          : 2;
    return bytes * static_cast<std::size_t>(plane.size.width);
}

} // namespace

PixelBufferMaker::PixelBufferMaker(CVPixelFormat format, IntSize size, TrackRequest::MakeBuffer makeBuffer)
    : m_format(format)
    , m_size(size)
    , m_makeBuffer(makeBuffer)
    , m_scaler(scaledKind(format, size))
{
}

Result<std::shared_ptr<CVPixelBuffer>> PixelBufferMaker::make(Frame frame)
{
    if (m_format == CVPixelFormat::AsDecoded)
        return wrap(std::move(frame));
    const std::shared_ptr<CVPixelBuffer> buffer = m_makeBuffer(m_size, m_format);
    if (!buffer)
        return Error{{}, cause::kNoMemory};
    buffer->setMatrix(matrixOf(*frame));
    const Outcome filled = fill(*buffer, *frame);
    if (!filled)
        return filled.error();
    if (m_format == CVPixelFormat::BGRA && hasAlpha(*frame))
        makeOpaque(buffer->planes().front());
    return buffer;
}

Outcome PixelBufferMaker::fill(CVPixelBuffer& buffer, const AVFrame& frame)
{
    std::uint8_t* rows[4] = {};
    int strides[4] = {};
    bool inPlace = true;
    std::size_t room = 0;
    for (const CVPixelBuffer::Plane& plane : buffer.planes()) {
        inPlace = inPlace && rowBytes(buffer, plane) % kRowUnit == 0;
        room += roomyStride(plane.bytesPerRow) * static_cast<std::size_t>(plane.size.height);
    }
    if (!inPlace)
        m_rows.resize(room + kRowUnit);
    std::uint8_t* scratch = m_rows.data();
    for (std::size_t i = 0; i < buffer.planes().size(); ++i) {
        const CVPixelBuffer::Plane& plane = buffer.planes()[i];
        const std::size_t stride = inPlace ? plane.bytesPerRow : roomyStride(plane.bytesPerRow);
        rows[i] = inPlace ? plane.bytes : scratch;
        strides[i] = static_cast<int>(stride);
        scratch += inPlace ? 0 : stride * static_cast<std::size_t>(plane.size.height);
    }
    Outcome scaled = m_scaler.scale(frame, rows, strides);
    if (!scaled || inPlace)
        return scaled;
    for (std::size_t i = 0; i < buffer.planes().size(); ++i) {
        const CVPixelBuffer::Plane& plane = buffer.planes()[i];
        const std::size_t bytes = rowBytes(buffer, plane);
        for (int y = 0; y < plane.size.height; ++y)
            std::memcpy(plane.bytes + static_cast<std::size_t>(y) * plane.bytesPerRow,
                        rows[i] + static_cast<std::ptrdiff_t>(y) * strides[i], bytes);
    }
    return success();
}

Result<std::shared_ptr<CVPixelBuffer>> PixelBufferMaker::wrap(Frame frame)
{
    const YCbCrMatrix matrix = matrixOf(*frame);
    if (!isPlain420(*frame) || IntSize{frame->width, frame->height} != m_size) {
        Result<Frame> plain = converted(*frame);
        if (!plain)
            return plain.error();
        frame = std::move(*plain);
    }
    // What kind of frame it was is no business of whoever encodes it anew.
    frame->pict_type = AV_PICTURE_TYPE_NONE;
    if (isFullRange(*frame))
        frame->color_range = AVCOL_RANGE_JPEG;
    frame->sample_aspect_ratio = {1, 1};
    const SharedFrame shared(std::move(frame));
    auto buffer = std::make_shared<CVPixelBuffer>(m_size, m_format, std::vector<CVPixelBuffer::Plane>(), shared);
    buffer->setMatrix(matrix);
    return buffer;
}

Result<Frame> PixelBufferMaker::converted(const AVFrame& frame)
{
    Frame plain(av_frame_alloc());
    int bytes = av_image_get_buffer_size(AV_PIX_FMT_YUV420P, m_size.width, m_size.height, kRowUnit);
    if (bytes > 0 && !m_pool)
        m_pool.reset(av_buffer_pool_init(static_cast<std::size_t>(bytes) + kRowUnit, nullptr));
    if (!plain || !m_pool || av_frame_copy_props(plain.get(), &frame) < 0)
        return Error{{}, cause::kNoMemory};
    plain->buf[0] = av_buffer_pool_get(m_pool.get());
    if (!plain->buf[0])
        return Error{{}, cause::kNoMemory};
    plain->format = AV_PIX_FMT_YUV420P;
    plain->width = m_size.width;
    plain->height = m_size.height;
    plain->color_range = AVCOL_RANGE_MPEG;
    plain->colorspace = colorSpaceOf(matrixOf(frame));
    plain->chroma_location = AVCHROMA_LOC_UNSPECIFIED;
    av_image_fill_arrays(plain->data, plain->linesize, plain->buf[0]->data, AV_PIX_FMT_YUV420P, m_size.width,
                         m_size.height, kRowUnit);
    const Outcome scaled = m_scaler.scale(frame, plain->data, plain->linesize);
    return scaled ? Result<Frame>(std::move(plain)) : scaled.error();
}

} // namespace lamina
