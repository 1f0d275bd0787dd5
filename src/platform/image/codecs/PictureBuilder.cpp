#include "platform/image/codecs/PictureBuilder_p.h"

#include "platform/base/WorkerPool.h"
#include "platform/image/pixels/ColorConversion.h"
#include "platform/image/pixels/PixelKernels.h"

#include <algorithm>
#include <atomic>
#include <utility>

namespace lamina {

PictureBuilder::PictureBuilder(int width, int height)
    : m_width(width)
    , m_height(height)
    , m_buffer(PixelBuffer::allocate(4 * static_cast<std::size_t>(width) * static_cast<std::size_t>(height)))
{
}

UIImage PictureBuilder::finish(bool translucent, std::span<const std::uint8_t> iccProfile,
                               UIImageOrientation orientation) &&
{
    std::atomic<bool> opaque = true;
    parallelRows(0, m_height, static_cast<std::size_t>(m_width), [&](int first, int last) {
        for (int y = first; y < last; ++y) {
            if (!translucent)
                kernels::setOpaque(row(y), static_cast<std::size_t>(m_width));
            else if (opaque.load(std::memory_order_relaxed) &&
                     !kernels::isOpaque(row(y), static_cast<std::size_t>(m_width)))
                opaque.store(false, std::memory_order_relaxed);
        }
    });
    const CGImageAlphaInfo alpha = opaque ? CGImageAlphaInfo::NoneSkipLast : CGImageAlphaInfo::Last;
    return std::move(*this).finishWith(alpha, iccProfile, orientation);
}

UIImage PictureBuilder::finishOpaque(std::span<const std::uint8_t> iccProfile, UIImageOrientation orientation) &&
{
    return std::move(*this).finishWith(CGImageAlphaInfo::NoneSkipLast, iccProfile, orientation);
}

UIImage PictureBuilder::finishWith(CGImageAlphaInfo alpha, std::span<const std::uint8_t> iccProfile,
                                   UIImageOrientation orientation) &&
{
    if (const auto conversion = ColorConversion::toSRGB(iccProfile, profileModel(iccProfile)))
        conversion->convertRows({row(0), m_width, m_height, bytesPerRow()});
    return UIImage(CGImage::make(CGImageLayout::rgba(m_width, m_height, alpha), std::move(m_buffer)), 1, orientation);
}

} // namespace lamina
