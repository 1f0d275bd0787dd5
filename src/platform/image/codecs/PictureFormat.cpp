#include "platform/image/codecs/PictureFormat_p.h"

#include "platform/base/WorkerPool.h"
#include "platform/image/pixels/ColorConversion.h"
#include "platform/image/pixels/PixelKernels.h"

#include <algorithm>
#include <atomic>
#include <utility>

namespace lamina {

namespace {

// Photos keep 1/3 to 1/30 of their pixels' bytes, flat drawings as PNG seldom less than 1/150.
constexpr std::uint64_t kBelievableCompression = 200;

std::string tooLarge(std::int64_t width, std::int64_t height)
{
    return std::string(cause::kTooLarge) + " (" + std::to_string(width) + " x " + std::to_string(height) + " pixels)";
}

} // namespace

std::optional<std::string> refusal(std::int64_t width, std::int64_t height, std::uint64_t heldBytes,
                                   std::uint64_t fileBytes, const DecodeOptions& options)
{
    if (width <= 0 || height <= 0)
        return cause::kDamaged;
    if (width > kMaximumClaimedPixels || height > kMaximumClaimedPixels / width || heldBytes > options.memoryLimit)
        return tooLarge(width, height);
    const std::uint64_t unreduced = 4 * static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height);
    if (unreduced > options.memoryLimit && fileBytes < unreduced / kBelievableCompression)
        return tooLarge(width, height);
    return std::nullopt;
}

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
