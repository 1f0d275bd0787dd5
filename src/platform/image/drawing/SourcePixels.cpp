#include "platform/image/drawing/SourcePixels.h"

#include "platform/base/WorkerPool.h"
#include "platform/image/pixels/PixelArithmetic.h"
#include "platform/image/pixels/PixelKernels.h"

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

namespace lamina {

namespace {

bool isPlainRGBA(const CGImage& image)
{
    const CGBitmapInfo order = image.bitmapInfo() & kCGBitmapByteOrderMask;
    const bool inOrder = order == kCGBitmapByteOrderDefault || order == kCGBitmapByteOrder32Big;
    return inOrder && (image.bitmapInfo() & kCGBitmapFloatComponents) == 0 && image.bitsPerComponent() == 8 &&
           image.bitsPerPixel() == 32 && image.colorSpace().model() == CGColorSpace::Model::RGB &&
           image.colorSpace().iccProfile().empty();
}

bool isPlainBytes(const CGImage& image, int bitsPerPixel)
{
    return image.bitsPerComponent() == 8 && image.bitsPerPixel() == bitsPerPixel &&
           (image.bitmapInfo() & ~kCGBitmapAlphaInfoMask) == kCGBitmapByteOrderDefault;
}

} // namespace

SourcePixels SourcePixels::rgba(const CGImage& image)
{
    SourcePixels source;
    source.m_image = image;
    source.m_hasAlpha = image.hasAlpha();
    if (isPlainRGBA(image)) {
        switch (image.alphaInfo()) {
        case CGImageAlphaInfo::PremultipliedLast:
            return source;
        case CGImageAlphaInfo::NoneSkipLast:
            source.m_forcesOpaque = true;
            return source;
        case CGImageAlphaInfo::Last:
            source.m_load = Load::Premultiply;
            return source;
        default:
            break;
        }
    }
    source.m_load = Load::Convert;
    source.m_converter = std::make_shared<const RowConverter>(image, AlphaForm::Premultiplied);
    return source;
}

std::optional<SourcePixels> SourcePixels::components(const CGImage& image)
{
    SourcePixels source;
    source.m_image = image;
    switch (image.colorSpace().model()) {
    case CGColorSpace::Model::Gray:
    case CGColorSpace::Model::AlphaOnly:
        source.m_channels = 1;
        if (isPlainBytes(image, 8))
            return source;
        break;
    case CGColorSpace::Model::CMYK:
        if (isPlainBytes(image, 32) && image.alphaInfo() == CGImageAlphaInfo::None)
            return source;
        break;
    case CGColorSpace::Model::RGB:
        break;
    }
    return std::nullopt;
}

SourcePixels SourcePixels::coverage(const CGImage& mask, bool inverted)
{
    const CGColorSpace::Model model = mask.colorSpace().model();
    const bool byAlpha = mask.hasAlpha() || model != CGColorSpace::Model::Gray;
    SourcePixels source;
    source.m_image = mask;
    source.m_channels = 1;
    source.m_inverted = inverted && !byAlpha;
    if (isPlainBytes(mask, 8)) {
        source.m_load = source.m_inverted ? Load::Invert : Load::Direct;
        return source;
    }
    source.m_load = byAlpha ? Load::ConvertAlpha : Load::ConvertValue;
    source.m_converter = std::make_shared<const RowConverter>(mask, AlphaForm::Premultiplied);
    return source;
}

const std::uint8_t* SourcePixels::row(int x, int y, int count, std::uint8_t* out) const
{
    const std::uint8_t* stored = m_image.row(y) + static_cast<std::ptrdiff_t>(x) * m_channels;
    const auto n = static_cast<std::size_t>(count);
    switch (m_load) {
    case Load::Direct:
        return stored;
    case Load::Premultiply:
        kernels::premultiply(stored, n, out);
        return out;
    case Load::Convert:
        m_converter->convert(x, y, count, out);
        return out;
    case Load::Invert:
        std::transform(stored, stored + n, out, [](std::uint8_t v) { return static_cast<std::uint8_t>(255 - v); });
        return out;
    case Load::ConvertValue:
    case Load::ConvertAlpha:
        break;
    }
    std::vector<std::uint8_t> rgba(4 * n);
    m_converter->convert(x, y, count, rgba.data());
    for (std::size_t i = 0; i < n; ++i) {
        const std::uint8_t* p = &rgba[4 * i];
        const std::uint8_t value = m_load == Load::ConvertAlpha ? p[3] : lumaOf(p[0], p[1], p[2]);
        out[i] = m_inverted ? static_cast<std::uint8_t>(255 - value) : value;
    }
    return out;
}

SourcePixels SourcePixels::fromBuffer(PixelBuffer buffer, IntSize size, const SourcePixels& like)
{
    SourcePixels source;
    CGImageLayout layout = like.m_channels == 1
                               ? CGImageLayout::gray(size.width, size.height)
                               : CGImageLayout::rgba(size.width, size.height, CGImageAlphaInfo::PremultipliedLast);
    source.m_image = CGImage::make(layout, std::move(buffer));
    source.m_channels = like.m_channels;
    source.m_forcesOpaque = like.m_forcesOpaque;
    source.m_hasAlpha = like.m_hasAlpha;
    return source;
}

std::optional<SourcePixels> SourcePixels::directPart(const IntRect& part) const
{
    const std::size_t rowBytes = static_cast<std::size_t>(part.width) * static_cast<std::size_t>(m_channels);
    PixelBuffer buffer = PixelBuffer::allocate(rowBytes * static_cast<std::size_t>(part.height));
    if (!buffer)
        return std::nullopt;
    parallelRows(0, part.height, static_cast<std::size_t>(part.width), [&](int begin, int end) {
        for (int y = begin; y < end; ++y) {
            std::uint8_t* out = buffer.data() + static_cast<std::size_t>(y) * rowBytes;
            const std::uint8_t* read = row(part.x, part.y + y, part.width, out);
            if (read != out)
                std::memcpy(out, read, rowBytes);
        }
    });
    return fromBuffer(std::move(buffer), {part.width, part.height}, *this);
}

std::optional<SourcePixels> SourcePixels::transposed(const IntRect& part) const
{
    const auto pixelBytes = static_cast<std::size_t>(m_channels);
    const std::size_t outStride = static_cast<std::size_t>(part.height) * pixelBytes;
    PixelBuffer buffer = PixelBuffer::allocate(outStride * static_cast<std::size_t>(part.width));
    if (!buffer)
        return std::nullopt;
    // Strips of rows that fit the cache; every strip writes runs of `kStrip` neighbouring pixels.
    constexpr int kStrip = 16;
    const int strips = (part.height + kStrip - 1) / kStrip;
    parallelRows(0, strips, static_cast<std::size_t>(part.width) * kStrip, [&](int begin, int end) {
        std::vector<std::uint8_t> scratch(isDirect() ? 0 : kStrip * static_cast<std::size_t>(part.width) * pixelBytes);
        for (int strip = begin; strip < end; ++strip) {
            const int top = strip * kStrip;
            const int rows = std::min(kStrip, part.height - top);
            const std::uint8_t* in[kStrip];
            for (int i = 0; i < rows; ++i)
                in[i] = row(part.x, part.y + top + i, part.width,
                            scratch.data() + (isDirect() ? 0 : static_cast<std::size_t>(i * part.width) * pixelBytes));
            for (int x = 0; x < part.width; ++x) {
                std::uint8_t* out = buffer.data() + static_cast<std::size_t>(x) * outStride +
                                    static_cast<std::size_t>(top) * pixelBytes;
                for (int i = 0; i < rows; ++i)
                    std::memcpy(out + static_cast<std::size_t>(i) * pixelBytes,
                                in[i] + static_cast<std::size_t>(x) * pixelBytes, pixelBytes);
            }
        }
    });
    return fromBuffer(std::move(buffer), {part.height, part.width}, *this);
}

} // namespace lamina
