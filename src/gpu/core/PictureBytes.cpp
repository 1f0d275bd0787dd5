#include "gpu/core/PictureBytes_p.h"

#include "platform/image/drawing/CGContext.h"

#include <bit>
#include <cstddef>
#include <limits>
#include <optional>

namespace lamina {

namespace {

bool hasFourPlainBytes(const CGImage& image)
{
    return image && image.bytesPerRow() == static_cast<std::size_t>(image.width()) * 4 && image.bitsPerPixel() == 32 &&
           image.bitsPerComponent() == 8 && (image.bitmapInfo() & kCGBitmapFloatComponents) == 0;
}

PictureBytes inLittleOrder(const CGImage& image)
{
    switch (image.alphaInfo()) {
    case CGImageAlphaInfo::PremultipliedFirst:
    case CGImageAlphaInfo::NoneSkipFirst:
    case CGImageAlphaInfo::First:
        return {image, GL_BGRA, false, false, true};
    default:
        return {};
    }
}

PictureBytes inBigOrder(const CGImage& image)
{
    switch (image.alphaInfo()) {
    case CGImageAlphaInfo::PremultipliedLast:
        return {image, GL_RGBA, true, false, false};
    case CGImageAlphaInfo::Last:
    case CGImageAlphaInfo::NoneSkipLast:
        return {image, GL_RGBA, false, false, false};
    default:
        return {};
    }
}

constexpr std::uint32_t swappedBytes(std::uint32_t word)
{
    return word << 24 | (word & 0xFF00u) << 8 | (word >> 8 & 0xFF00u) | word >> 24;
}

/// Cut to a whole number; nothing a 32-bit field could hold is all ones, what is no number is 0.
std::uint32_t cut(double value)
{
    if (!(value > 0))
        return 0;
    constexpr auto kMost = std::numeric_limits<std::uint32_t>::max();
    return value >= static_cast<double>(kMost) ? kMost : static_cast<std::uint32_t>(value);
}

std::uint32_t divided(std::uint32_t word, bool alphaFirst)
{
    const double alpha = (alphaFirst ? word >> 24 : word & 0xFFu) / 255.0;
    const std::uint32_t colors = alphaFirst ? word : word >> 8;
    std::uint32_t packed = 0;
    for (const unsigned shift : {16u, 8u, 0u})
        packed |= cut((colors >> shift & 0xFFu) / 255.0 / alpha * 255.0) << shift;
    const std::uint32_t opacity = cut(alpha * 255.0);
    return alphaFirst ? packed | opacity << 24 : packed << 8 | opacity;
}

} // namespace

PictureBytes bytesAsTheyAre(const CGImage& image)
{
    if (!hasFourPlainBytes(image))
        return {};
    switch (image.bitmapInfo() & kCGBitmapByteOrderMask) {
    case kCGBitmapByteOrder32Little:
        return inLittleOrder(image);
    case kCGBitmapByteOrderDefault:
    case kCGBitmapByteOrder32Big:
        return inBigOrder(image);
    default:
        return {image, GL_BGRA, false, false, true};
    }
}

PictureBytes bytesDrawnAnew(const CGImage& image, IntSize size)
{
    if (size.isEmpty() || !image)
        return {};
    std::optional<CGContext> context =
        CGContext::bitmap(size.width, size.height, static_cast<std::size_t>(size.width) * 4, CGColorSpace::deviceRGB(),
                          bitmapInfo(CGImageAlphaInfo::PremultipliedFirst, kCGBitmapByteOrder32Little));
    if (!context)
        return {};
    context->drawImage(image, CGRect(0, 0, size.width, size.height));
    return {context->makeImage(), GL_BGRA, true, true, true};
}

void removePremultiplication(std::span<std::uint32_t> pixels, bool alphaFirst, bool littleEndian)
{
    const bool swap = littleEndian != (std::endian::native == std::endian::little);
    for (std::uint32_t& pixel : pixels) {
        const std::uint32_t result = divided(swap ? swappedBytes(pixel) : pixel, alphaFirst);
        pixel = swap ? swappedBytes(result) : result;
    }
}

} // namespace lamina
