#include "imageops/MovedPicture_p.h"

#include "platform/image/pixels/PixelBuffer.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace lamina {

namespace {

/// What makes a skipped byte an alpha of 255; the layout is told so.
std::uint32_t makeOpaque(CGImageLayout& layout)
{
    const std::size_t alpha = componentPlaces(layout.bitmapInfo)[3];
    const bool first = alphaStandsFirst(layout.alphaInfo());
    layout.bitmapInfo = (layout.bitmapInfo & ~kCGBitmapAlphaInfoMask) |
                        bitmapInfo(first ? CGImageAlphaInfo::PremultipliedFirst : CGImageAlphaInfo::PremultipliedLast);
    std::uint8_t bytes[4] = {};
    bytes[alpha] = 255;
    return std::bit_cast<std::uint32_t>(bytes);
}

} // namespace

bool canMovePicture(const CGImage& image)
{
    const CGBitmapInfo order = image.bitmapInfo() & kCGBitmapByteOrderMask;
    return image && !image.mask() && image.colorSpace().model() == CGColorSpace::Model::RGB &&
           image.bitsPerComponent() == 8 && image.bitsPerPixel() == 32 &&
           (image.bitmapInfo() & kCGBitmapFloatComponents) == 0 && order != kCGBitmapByteOrder16Little;
}

CGImage movedPicture(const CGImage& image, const PixelMove& move)
{
    CGImageLayout layout = image.layout();
    if (move.swapsSides())
        std::swap(layout.width, layout.height);
    layout.bytesPerRow = 4 * static_cast<std::size_t>(layout.width);
    const std::uint32_t filled = image.hasAlpha() ? 0 : makeOpaque(layout);
    PixelBuffer buffer = PixelBuffer::allocate(layout.byteCount());
    if (!buffer)
        return {};
    movePixels(image, move, filled, buffer.data(), layout.bytesPerRow);
    return CGImage::make(layout, std::move(buffer));
}

} // namespace lamina
