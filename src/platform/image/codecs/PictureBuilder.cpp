#include "platform/image/codecs/PictureBuilder_p.h"

#include "platform/base/Cancelling.h"
#include "platform/base/Causes.h"
#include "platform/base/WorkerPool.h"
#include "platform/image/pixels/ColorConversion.h"
#include "platform/image/pixels/PixelKernels.h"

#include <algorithm>
#include <atomic>
#include <utility>

namespace lamina {

namespace {

PixelMemory pixelMemory = &PixelBuffer::allocate;

} // namespace

void setPixelMemory(PixelMemory memory)
{
    pixelMemory = memory ? memory : &PixelBuffer::allocate;
}

PictureBuilder::PictureBuilder(int width, int height, const DecodeOptions& options)
    : m_width(width)
    , m_height(height)
    , m_cancelled(options.cancelled)
    , m_buffer(pixelMemory(4 * static_cast<std::size_t>(width) * static_cast<std::size_t>(height)))
{
}

Outcome PictureBuilder::fill(std::array<std::uint8_t, 4> pixel)
{
    parallelRows(0, m_height, static_cast<std::size_t>(m_width), [&](int first, int last) {
        for (int y = first; y < last && !isCancelled(m_cancelled); ++y) {
            for (int x = 0; x < m_width; ++x)
                std::ranges::copy(pixel, row(y) + 4 * static_cast<std::ptrdiff_t>(x));
        }
    });
    return isCancelled(m_cancelled) ? Outcome(Error{{}, cause::kCancelled}) : success();
}

Result<UIImage> PictureBuilder::finish(bool translucent, std::span<const std::uint8_t> iccProfile,
                                       UIImageOrientation orientation) &&
{
    std::atomic<bool> opaque = true;
    parallelRows(0, m_height, static_cast<std::size_t>(m_width), [&](int first, int last) {
        for (int y = first; y < last && !isCancelled(m_cancelled); ++y) {
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

Result<UIImage> PictureBuilder::finishOpaque(std::span<const std::uint8_t> iccProfile,
                                             UIImageOrientation orientation) &&
{
    return std::move(*this).finishWith(CGImageAlphaInfo::NoneSkipLast, iccProfile, orientation);
}

Result<UIImage> PictureBuilder::finishWith(CGImageAlphaInfo alpha, std::span<const std::uint8_t> iccProfile,
                                           UIImageOrientation orientation) &&
{
    if (const auto conversion = ColorConversion::toSRGB(iccProfile, profileModel(iccProfile)))
        conversion->convertRows({row(0), m_width, m_height, bytesPerRow()}, m_cancelled);
    if (isCancelled(m_cancelled))
        return Error{{}, cause::kCancelled};
    return UIImage(CGImage::make(CGImageLayout::rgba(m_width, m_height, alpha), std::move(m_buffer)), 1, orientation);
}

} // namespace lamina
