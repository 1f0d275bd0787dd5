#include "platform/image/pixels/PictureOpacity.h"

#include "platform/base/WorkerPool.h"
#include "platform/image/pixels/PixelKernels.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace lamina {

bool isOpaque(const CGImage& image, const RowConverter& rows)
{
    if (!image.hasAlpha())
        return true;
    std::atomic<bool> opaque = true;
    parallelRows(0, image.height(), static_cast<std::size_t>(image.width()), [&](int first, int last) {
        std::vector<std::uint8_t> rgba(4 * static_cast<std::size_t>(image.width()));
        for (int y = first; y < last && opaque.load(std::memory_order_relaxed); ++y) {
            rows.convert(0, y, image.width(), rgba.data());
            if (!kernels::isOpaque(rgba.data(), rgba.size() / 4))
                opaque.store(false, std::memory_order_relaxed);
        }
    });
    return opaque;
}

bool hasPlainRows(const CGImage& image)
{
    const CGImageLayout plain = CGImageLayout::rgba(image.width(), image.height(), CGImageAlphaInfo::NoneSkipLast);
    return !image.mask() && image.bitsPerComponent() == plain.bitsPerComponent &&
           image.bitsPerPixel() == plain.bitsPerPixel && image.bitmapInfo() == plain.bitmapInfo &&
           image.colorSpace() == plain.colorSpace;
}

} // namespace lamina
