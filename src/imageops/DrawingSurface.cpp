#include "imageops/DrawingSurface.h"

#include "platform/base/WorkerPool.h"
#include "platform/image/PixelConversion.h"
#include "platform/image/Resampling.h"

#include <bit>
#include <cmath>
#include <cstring>
#include <utility>

namespace lamina {

namespace {

constexpr double kLongestSide = 1 << 18;
constexpr double kLargestArea = 1 << 27;

/// R G B A in memory becomes A R G B; the bits of `filled` are set in A.
void moveAlphaFirst(const std::uint8_t* rgba, std::uint8_t* argb, std::uint8_t filled)
{
    std::uint32_t pixel;
    std::memcpy(&pixel, rgba, 4);
    if constexpr (std::endian::native == std::endian::little)
        pixel = std::rotl(pixel, 8) | filled;
    else
        pixel = std::rotr(pixel, 8) | static_cast<std::uint32_t>(filled) << 24;
    std::memcpy(argb, &pixel, 4);
}

} // namespace

bool sourceHasAlpha(const CGImage& image)
{
    const auto info = static_cast<std::uint32_t>(image.alphaInfo());
    return info >= 1 && info <= 4;
}

std::optional<IntSize> wholePixels(double width, double height)
{
    const double w = std::floor(width + 1e-6);
    const double h = std::floor(height + 1e-6);
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
    return make(image, size, sourceHasAlpha(image));
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
    const std::size_t bytes = 4 * static_cast<std::size_t>(m_size.width);
    const std::uint8_t* rgba = this->rgba(y, argb);
    const std::uint8_t filled = filledAlpha();
    if (rgba ==
        argb) { // converted where the result goes: a loop of its own, since overlapping pointers go without lanes
        for (std::size_t i = 0; i < bytes; i += 4)
            moveAlphaFirst(argb + i, argb + i, filled);
        return;
    }
    for (std::size_t i = 0; i < bytes; i += 4)
        moveAlphaFirst(rgba + i, argb + i, filled);
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

std::optional<DrawingSurface> workingSurface(const UIImage& image)
{
    const std::optional<DrawnRows> rows = workingRows(image);
    return rows ? rows->draw() : std::nullopt;
}

} // namespace lamina
