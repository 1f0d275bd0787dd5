#include "platform/image/pixels/CGImage.h"

#include <algorithm>
#include <utility>

namespace lamina {

CGImageLayout CGImageLayout::rgba(int width, int height, CGImageAlphaInfo alpha)
{
    return {width,
            height,
            4 * static_cast<std::size_t>(std::max(0, width)),
            8,
            32,
            lamina::bitmapInfo(alpha),
            CGColorSpace::deviceRGB()};
}

CGImageLayout CGImageLayout::gray(int width, int height)
{
    return {width,
            height,
            static_cast<std::size_t>(std::max(0, width)),
            8,
            8,
            lamina::bitmapInfo(CGImageAlphaInfo::None),
            CGColorSpace::deviceGray()};
}

namespace {

/// Alpha is one more component; what is skipped may be as little as a bit, as in pixels of 5 bits a component.
int bitsBesideColors(const CGImageLayout& layout)
{
    if (layout.alphaInfo() == CGImageAlphaInfo::None)
        return 0;
    return skipsAlpha(layout.alphaInfo()) ? 1 : layout.bitsPerComponent;
}

bool isPossible(const CGImageLayout& layout)
{
    if (layout.width <= 0 || layout.height <= 0 || layout.bitsPerComponent <= 0 || layout.bitsPerPixel <= 0)
        return false;
    const bool alphaOnly = layout.colorSpace.model() == CGColorSpace::Model::AlphaOnly;
    if (alphaOnly != (layout.alphaInfo() == CGImageAlphaInfo::Only))
        return false;
    const int colorBits = layout.bitsPerComponent * layout.colorSpace.componentCount();
    if (layout.bitsPerPixel < colorBits + bitsBesideColors(layout))
        return false;
    const std::size_t rowBits = static_cast<std::size_t>(layout.width) * static_cast<std::size_t>(layout.bitsPerPixel);
    return layout.bytesPerRow >= (rowBits + 7) / 8;
}

} // namespace

CGImage CGImage::make(const CGImageLayout& layout, PixelBuffer buffer)
{
    const std::size_t size = buffer.size();
    return make(layout, std::move(buffer).share(), size);
}

CGImage CGImage::make(const CGImageLayout& layout, std::shared_ptr<const std::uint8_t> bytes, std::size_t byteCount)
{
    CGImage image;
    if (!bytes || !isPossible(layout) || layout.byteCount() > byteCount)
        return image;
    image.m_layout = layout;
    image.m_bytes = std::move(bytes);
    return image;
}

bool CGImage::hasAlpha() const
{
    return alphaInfo() != CGImageAlphaInfo::None && !skipsAlpha(alphaInfo());
}

CGImage CGImage::subImage(const IntRect& rect) const
{
    const IntRect inside = rect.intersection({0, 0, width(), height()});
    if (!m_bytes || inside.isEmpty() || m_layout.bitsPerPixel % 8 != 0)
        return {};
    const std::size_t offset = static_cast<std::size_t>(inside.y) * m_layout.bytesPerRow +
                               static_cast<std::size_t>(inside.x) * static_cast<std::size_t>(m_layout.bitsPerPixel / 8);
    CGImage image;
    image.m_layout = m_layout;
    image.m_layout.width = inside.width;
    image.m_layout.height = inside.height;
    image.m_bytes = std::shared_ptr<const std::uint8_t>(m_bytes, m_bytes.get() + offset);
    return image;
}

CGImage CGImage::withMask(const CGImage& mask) const
{
    CGImage image = *this;
    image.m_mask = mask ? std::make_shared<const CGImage>(mask) : nullptr;
    return image;
}

} // namespace lamina
