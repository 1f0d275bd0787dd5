#include "platform/base/WorkerPool.h"
#include "platform/image/CGContext_p.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace lamina {

namespace {

/// Where R, G, B and A go in a pixel's memory.
std::array<std::size_t, 4> byteOrder(CGBitmapInfo info)
{
    const auto alpha = static_cast<CGImageAlphaInfo>(info & kCGBitmapAlphaInfoMask);
    const bool first = alpha == CGImageAlphaInfo::PremultipliedFirst || alpha == CGImageAlphaInfo::NoneSkipFirst;
    std::array<std::size_t, 4> places =
        first ? std::array<std::size_t, 4>{1, 2, 3, 0} : std::array<std::size_t, 4>{0, 1, 2, 3};
    if ((info & kCGBitmapByteOrderMask) == kCGBitmapByteOrder32Little) {
        for (std::size_t& place : places)
            place = 3 - place;
    }
    return places;
}

CGImage swizzled(const Surface& surface, const CGImageLayout& layout, const std::array<std::size_t, 4>& places)
{
    PixelBuffer buffer = PixelBuffer::zeroed(surface.byteCount());
    if (!buffer)
        return {};
    parallelRows(0, layout.height, static_cast<std::size_t>(layout.width), [&](int begin, int end) {
        for (int y = begin; y < end; ++y) {
            const std::uint8_t* in = surface.at(0, y);
            std::uint8_t* out = buffer.data() + static_cast<std::size_t>(y) * layout.bytesPerRow;
            for (int x = 0; x < layout.width; ++x, in += 4, out += 4) {
                for (std::size_t c = 0; c < 4; ++c)
                    out[places[c]] = in[c];
            }
        }
    });
    return CGImage::make(layout, std::move(buffer));
}

} // namespace

CGImage CGContext::makeImage()
{
    const Impl& impl = *m_impl;
    const Surface& surface = impl.bottom;
    if (impl.isRGB()) {
        const std::array<std::size_t, 4> places = byteOrder(impl.layout.bitmapInfo);
        if (places != std::array<std::size_t, 4>{0, 1, 2, 3})
            return swizzled(surface, impl.layout, places);
    }
    return CGImage::make(impl.layout, surface.share(), surface.byteCount());
}

UIImage CGContext::makeUIImage()
{
    CGImage image = makeImage();
    return image ? UIImage(std::move(image), m_impl->scale) : UIImage();
}

} // namespace lamina
