#include "imageops/DrawingSurface.h"

#include "platform/base/WorkerPool.h"
#include "platform/image/drawing/Resampling.h"
#include "platform/image/pixels/PixelConversion.h"
#include "platform/image/pixels/PixelKernels.h"

#include <array>
#include <bit>
#include <cmath>
#include <utility>

namespace lamina {

namespace {

constexpr double kLongestSide = 1 << 18;
constexpr double kLargestArea = 1 << 27;

/// A R G B taken from R G B A.
constexpr kernels::ByteOrder kAlphaFirst{3, 0, 1, 2};

} // namespace

std::optional<IntSize> wholePixels(double width, double height)
{
    const double w = std::floor(width + kPixelNoise);
    const double h = std::floor(height + kPixelNoise);
    if (!(w >= 1 && w <= kLongestSide) || !(h >= 1 && h <= kLongestSide) || w * h > kLargestArea)
        return std::nullopt;
    return IntSize{static_cast<int>(w), static_cast<int>(h)};
}

DrawingSurface::DrawingSurface(PixelBuffer buffer, IntSize size, bool hasAlpha)
    : m_buffer(std::move(buffer))
    , m_size(size)
    , m_hasAlpha(hasAlpha)
{
}

std::optional<DrawingSurface> DrawingSurface::make(IntSize size, bool hasAlpha)
{
    if (!wholePixels(size.width, size.height))
        return std::nullopt;
    PixelBuffer buffer =
        PixelBuffer::allocate(4 * static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height));
    if (!buffer)
        return std::nullopt;
    return DrawingSurface(std::move(buffer), size, hasAlpha);
}

CGImage DrawingSurface::makeImage() &&
{
    CGImageLayout layout =
        CGImageLayout::rgba(m_size.width, m_size.height,
                            m_hasAlpha ? CGImageAlphaInfo::PremultipliedFirst : CGImageAlphaInfo::NoneSkipFirst);
    return CGImage::make(layout, std::move(m_buffer));
}

UIImage DrawingSurface::makePicture(double scale, UIImageOrientation orientation) &&
{
    return UIImage(std::move(*this).makeImage(), scale, orientation);
}

DrawnRows::DrawnRows(SourcePixels pixels, IntSize size, bool hasAlpha)
    : m_pixels(std::move(pixels))
    , m_size(size)
    , m_hasAlpha(hasAlpha)
{
}

std::optional<DrawnRows> DrawnRows::make(const CGImage& image, IntSize size)
{
    return make(image, size, image.hasAlpha() && image.alphaInfo() != CGImageAlphaInfo::Only);
}

std::optional<DrawnRows> DrawnRows::make(const CGImage& image, IntSize size, bool hasAlpha)
{
    if (!image || !wholePixels(size.width, size.height))
        return std::nullopt;
    CGImage drawn = image.mask() ? convertedToSRGB(image) : image;
    if (drawn && drawn.size() != size)
        drawn = resampled(drawn, size);
    if (!drawn)
        return std::nullopt;
    return DrawnRows(SourcePixels::rgba(drawn), size, hasAlpha);
}

void DrawnRows::read(int y, std::uint8_t* argb) const
{
    const std::array<std::uint8_t, 4> filled{filledAlpha(), 0, 0, 0};
    kernels::reorder(rgba(y, argb), static_cast<std::size_t>(m_size.width), kAlphaFirst,
                     std::bit_cast<std::uint32_t>(filled), argb);
}

std::optional<DrawingSurface> DrawnRows::draw() const
{
    std::optional<DrawingSurface> surface = DrawingSurface::make(m_size, m_hasAlpha);
    if (surface) {
        parallelRows(0, m_size.height, static_cast<std::size_t>(m_size.width), [&](int first, int last) {
            for (int y = first; y < last; ++y)
                read(y, surface->row(y));
        });
    }
    return surface;
}

std::optional<DrawnRows> workingRows(const UIImage& image)
{
    const CGSize points = image.size();
    const std::optional<IntSize> size = wholePixels(points.width, points.height);
    return size ? DrawnRows::make(image.cgImage(), *size) : std::nullopt;
}

} // namespace lamina
