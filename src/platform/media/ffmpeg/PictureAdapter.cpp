#include "platform/media/ffmpeg/PictureAdapter_p.h"

#include "platform/base/Causes.h"
#include "platform/media/ffmpeg/BGRAConversion_p.h"
#include "platform/media/ffmpeg/FrameScaling_p.h"

extern "C" {
#include <libavutil/buffer.h>
#include <libavutil/imgutils.h>
}

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

namespace lamina {

namespace {

/// Untagged pictures: the larger ones were made for high definition.
AVColorSpace matrixOf(const CVPixelBuffer& pixels)
{
    constexpr int kLinesOfHighDefinition = 720;
    if (pixels.matrix() != YCbCrMatrix::None)
        return colorSpaceOf(pixels.matrix());
    return pixels.size().height >= kLinesOfHighDefinition ? AVCOL_SPC_BT709 : AVCOL_SPC_SMPTE170M;
}

/// Formats that say the range by their names have another that leaves it to the tag.
PictureKind kindOf(const AVFrame& frame)
{
    const bool saysFull = frame.format == AV_PIX_FMT_YUVJ420P;
    const auto format = saysFull ? AV_PIX_FMT_YUV420P : static_cast<AVPixelFormat>(frame.format);
    const AVColorRange range = saysFull ? AVCOL_RANGE_JPEG : frame.color_range;
    return {format, frame.colorspace, frame.color_primaries, frame.color_trc, range, frame.chroma_location};
}

PictureKind kindOf(const CVPixelBuffer& pixels)
{
    if (pixels.pixelFormat() == CVPixelFormat::AsDecoded)
        return kindOf(*static_cast<const AVFrame*>(pixels.owner().get()));
    PictureKind kind;
    if (pixels.pixelFormat() == CVPixelFormat::BGRA || pixels.pixelFormat() == CVPixelFormat::RGBA) {
        kind.format = pixels.pixelFormat() == CVPixelFormat::BGRA ? AV_PIX_FMT_BGR0 : AV_PIX_FMT_RGB0;
        kind.matrix = AVCOL_SPC_RGB;
        kind.range = AVCOL_RANGE_JPEG;
        return kind;
    }
    kind.format = AV_PIX_FMT_NV12;
    kind.matrix = matrixOf(pixels);
    if (kind.matrix == AVCOL_SPC_SMPTE170M) {
        kind.primaries = AVCOL_PRI_UNSPECIFIED;
        kind.transfer = AVCOL_TRC_SMPTE170M;
    }
    if (pixels.pixelFormat() == CVPixelFormat::BiPlanar420FullRange)
        kind.range = AVCOL_RANGE_JPEG;
    return kind;
}

bool isEncodable(AVPixelFormat format)
{
    return format == AV_PIX_FMT_YUV420P || format == AV_PIX_FMT_NV12;
}

void release(void* owner, std::uint8_t*)
{
    delete static_cast<std::shared_ptr<CVPixelBuffer>*>(owner);
}

/// A frame over the pixels, which it keeps; null when memory is short.
Frame wrap(const std::shared_ptr<CVPixelBuffer>& pixels)
{
    if (pixels->pixelFormat() == CVPixelFormat::AsDecoded)
        return Frame(av_frame_clone(static_cast<const AVFrame*>(pixels->owner().get())));
    Frame frame(av_frame_alloc());
    if (!frame || pixels->planes().empty())
        return {};
    const PictureKind kind = kindOf(*pixels);
    frame->format = kind.format;
    frame->colorspace = kind.matrix;
    frame->color_primaries = kind.primaries;
    frame->color_trc = kind.transfer;
    frame->color_range = kind.range;
    frame->chroma_location = kind.chroma;
    frame->width = pixels->size().width;
    frame->height = pixels->size().height;
    for (std::size_t i = 0; i < pixels->planes().size(); ++i) {
        frame->data[i] = pixels->planes()[i].bytes;
        frame->linesize[i] = static_cast<int>(pixels->planes()[i].bytesPerRow);
    }
    auto owner = std::make_unique<std::shared_ptr<CVPixelBuffer>>(pixels);
    frame->buf[0] = av_buffer_create(frame->data[0], 1, release, owner.get(), AV_BUFFER_FLAG_READONLY);
    if (!frame->buf[0])
        return {};
    owner.release();
    return frame;
}

void tag(AVFrame& frame, const PictureKind& kind)
{
    frame.format = kind.format;
    frame.colorspace = kind.matrix;
    frame.color_primaries = kind.primaries;
    frame.color_trc = kind.transfer;
    frame.color_range = kind.range;
    frame.chroma_location = kind.chroma;
    frame.pict_type = AV_PICTURE_TYPE_NONE; // the encoder chooses
    frame.key_frame = 0;
}

bool isFullRange(const PictureKind& kind)
{
    return kind.range == AVCOL_RANGE_JPEG;
}

/// Whether the samples mean the same, whatever else is tagged.
bool areSame(const PictureKind& one, const PictureKind& other)
{
    return one.format == other.format && one.matrix == other.matrix && isFullRange(one) == isFullRange(other);
}

} // namespace

PictureKind encodedKind(const CVPixelBuffer& pixels)
{
    PictureKind kind = kindOf(pixels);
    if (isEncodable(kind.format))
        return kind;
    const bool isRGB = kind.matrix == AVCOL_SPC_RGB;
    kind.format = AV_PIX_FMT_YUV420P;
    kind.range = AVCOL_RANGE_MPEG;
    return isRGB ? PictureKind{} : kind;
}

Result<Frame> PictureAdapter::adapt(const std::shared_ptr<CVPixelBuffer>& pixels)
{
    Frame frame = wrap(pixels);
    if (!frame)
        return Error{{}, cause::kNoMemory};
    const IntSize even = evenSize(m_size);
    const PictureKind kind = kindOf(*pixels);
    if (!areSame(kind, m_kind) || frame->width != even.width || frame->height != even.height) {
        if (Outcome filled = fill(*frame); !filled)
            return filled.error();
        frame.reset(av_frame_clone(m_frame.get()));
        if (!frame)
            return Error{{}, cause::kNoMemory};
    }
    tag(*frame, m_kind);
    return frame;
}

Outcome PictureAdapter::prepareFrame()
{
    if (m_frame && av_frame_is_writable(m_frame.get()) > 0)
        return success();
    const IntSize even = evenSize(m_size);
    m_frame.reset(av_frame_alloc());
    if (!m_frame)
        return Error{{}, cause::kNoMemory};
    m_frame->format = m_kind.format;
    m_frame->width = even.width;
    m_frame->height = even.height;
    if (av_frame_get_buffer(m_frame.get(), 0) < 0)
        return Error{{}, cause::kNoMemory};
    for (const AVBufferRef* buffer : m_frame->buf) // vector code reads what lies between the rows, too
        if (buffer)
            std::memset(buffer->data, 0, buffer->size);
    return success();
}

Outcome PictureAdapter::prepareScaler(const AVFrame& source)
{
    const PictureKind kind = kindOf(source);
    const IntSize size{source.width, source.height};
    if (m_scaler && kind == m_scaledKind && size == m_scaledSize)
        return success();
    m_scaler = makeScaler(size, kind.format, m_size, m_kind.format, kind.chroma == AVCHROMA_LOC_CENTER);
    if (!m_scaler)
        return Error{{}, cause::kCantEncode};
    constexpr int kUnchanged = 1 << 16;
    const int* to = sws_getCoefficients(m_kind.matrix);
    const bool isRGB = kind.matrix == AVCOL_SPC_RGB;
    sws_setColorspaceDetails(m_scaler.get(), isRGB ? to : sws_getCoefficients(kind.matrix),
                             isRGB || isFullRange(kind) ? 1 : 0, to, isFullRange(m_kind) ? 1 : 0, 0, kUnchanged,
                             kUnchanged);
    m_scaledKind = kind;
    m_scaledSize = size;
    return success();
}

Outcome PictureAdapter::fill(const AVFrame& source)
{
    if (Outcome prepared = prepareFrame(); !prepared)
        return prepared;
    if (areSame(kindOf(source), m_kind) && source.width == m_size.width && source.height == m_size.height) {
        copyPlanes(source);
    } else if ((source.format == AV_PIX_FMT_BGR0 || source.format == AV_PIX_FMT_RGB0) && m_kind == PictureKind{} &&
               source.width == m_size.width && source.height == m_size.height) {
        const auto plane = [this](int i) { return ByteRows{m_frame->data[i], m_frame->linesize[i]}; };
        convertBGRATo420(source.data[0], source.linesize[0], m_size, source.format == AV_PIX_FMT_RGB0,
                         {plane(0), plane(1), plane(2)});
    } else {
        if (Outcome prepared = prepareScaler(source); !prepared)
            return prepared;
        if (sws_scale(m_scaler.get(), source.data, source.linesize, 0, source.height, m_frame->data,
                      m_frame->linesize) < 0)
            return Error{{}, cause::kCantEncode};
    }
    repeatLast();
    return success();
}

void PictureAdapter::copyPlanes(const AVFrame& source)
{
    const std::uint8_t* planes[4] = {source.data[0], source.data[1], source.data[2], nullptr};
    av_image_copy(m_frame->data, m_frame->linesize, planes, source.linesize, m_kind.format, m_size.width,
                  m_size.height);
}

/// An odd side gets its last column or row once more; chroma, of half the sides rounded up, has it already.
void PictureAdapter::repeatLast()
{
    std::uint8_t* rows = m_frame->data[0];
    const auto stride = static_cast<std::ptrdiff_t>(m_frame->linesize[0]);
    if (m_size.width % 2 != 0)
        for (int y = 0; y < m_size.height; ++y)
            rows[y * stride + m_size.width] = rows[y * stride + m_size.width - 1];
    if (m_size.height % 2 != 0)
        std::memcpy(rows + m_size.height * stride, rows + (m_size.height - 1) * stride,
                    static_cast<std::size_t>(m_frame->width));
}

} // namespace lamina
