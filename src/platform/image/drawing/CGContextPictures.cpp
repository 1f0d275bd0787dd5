#include "platform/base/WorkerPool.h"
#include "platform/image/drawing/CGContext_p.h"
#include "platform/image/drawing/Surface_p.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PixelBuffer.h"
#include "platform/image/pixels/PixelKernels.h"
#include "platform/image/pixels/UIImage.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <utility>

namespace lamina {

namespace {

/// Which of R, G, B and A stands at each place of a pixel's memory.
kernels::ByteOrder byteOrder(CGBitmapInfo info)
{
    const std::array<std::uint8_t, 4> places = componentPlaces(info);
    kernels::ByteOrder order{};
    for (std::uint8_t component = 0; component < 4; ++component)
        order[places[component]] = component;
    return order;
}

CGImage reordered(const Surface& surface, const CGImageLayout& layout, const kernels::ByteOrder& order)
{
    PixelBuffer buffer = PixelBuffer::allocate(surface.byteCount());
    if (!buffer)
        return {};
    const auto width = static_cast<std::size_t>(layout.width);
    parallelRows(0, layout.height, width, [&](int begin, int end) {
        for (int y = begin; y < end; ++y) {
            std::uint8_t* out = buffer.data() + static_cast<std::size_t>(y) * layout.bytesPerRow;
            kernels::reorder(surface.at(0, y), width, order, 0, out);
            std::memset(out + 4 * width, 0, layout.bytesPerRow - 4 * width);
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
        const kernels::ByteOrder order = byteOrder(impl.layout.bitmapInfo);
        if (order != kernels::ByteOrder{0, 1, 2, 3})
            return reordered(surface, impl.layout, order);
    }
    return CGImage::make(impl.layout, surface.share(), surface.byteCount());
}

UIImage CGContext::makeUIImage()
{
    CGImage image = makeImage();
    return image ? UIImage(std::move(image), m_impl->scale) : UIImage();
}

} // namespace lamina
