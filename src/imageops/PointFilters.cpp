#include "imageops/ColorKernels_p.h"
#include "imageops/DrawingSurface.h"
#include "imageops/ImageFilters.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/WorkerPool.h"
#include "platform/image/pixels/UIImage.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <optional>

// Contrast is a line through the middle grey of slope 259 (v + 255) / (255 (259 - v)), gamma the power law of R. C.
// Gonzalez, R. E. Woods, "Digital Image Processing", sepia a matrix of three weighted sums.

namespace lamina {

namespace {

using filters::ColorRow;
using ByteTable = std::array<std::uint8_t, 256>;

/// Draws row by row into the surface that becomes the result, through `change(ColorRow)`: every byte moves once.
template <class Change>
std::optional<DrawingSurface> changedRows(const std::optional<DrawnRows>& rows, const Change& change)
{
    std::optional<DrawingSurface> surface;
    if (rows)
        surface = DrawingSurface::make(rows->size(), rows->hasAlpha());
    if (!surface)
        return std::nullopt;
    const auto pixels = static_cast<std::size_t>(rows->width());
    parallelRows(0, rows->height(), pixels, [&](int first, int last) {
        for (int y = first; y < last; ++y) {
            std::uint8_t* argb = surface->row(y);
            change(ColorRow{rows->rgba(y, argb), rows->filledAlpha(), argb, pixels});
        }
    });
    return surface;
}

UIImage picture(std::optional<DrawingSurface> surface)
{
    return surface ? std::move(*surface).makePicture() : UIImage();
}

/// With the scale and orientation of the source.
UIImage picture(std::optional<DrawingSurface> surface, const UIImage& source)
{
    return surface ? std::move(*surface).makePicture(source.scale(), source.imageOrientation()) : UIImage();
}

std::optional<DrawingSurface> linearlyMapped(const UIImage& image, const filters::LinearMap& map)
{
    return changedRows(workingRows(image), [&](const ColorRow& row) { filters::mapColors(map, row); });
}

/// All four bytes of a pixel are read before any is written: both may be the same row.
void lookUp(const ByteTable& colors, const ByteTable& alphas, ColorRow row)
{
    for (const std::uint8_t* end = row.rgba + 4 * row.pixels; row.rgba != end; row.rgba += 4, row.argb += 4) {
        const std::uint8_t alpha = alphas[row.rgba[3] | row.filledAlpha];
        const std::uint8_t red = colors[row.rgba[0]];
        const std::uint8_t green = colors[row.rgba[1]];
        const std::uint8_t blue = colors[row.rgba[2]];
        row.argb[0] = alpha;
        row.argb[1] = red;
        row.argb[2] = green;
        row.argb[3] = blue;
    }
}

/// The powers are taken in double precision and rounded once, so that they don't hang on the processor's own way to
/// them.
ByteTable gammaTable(float exponent)
{
    ByteTable table{};
    for (int i = 0; i < 256; ++i) {
        const float share = static_cast<float>(i) / 255.0F;
        const double power = std::pow(static_cast<double>(share), static_cast<double>(exponent));
        const auto cut = static_cast<float>(std::min(power, 1.0)); // negative exponents pass what a float holds
        table[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(cut * 255.0F);
    }
    return table;
}

ByteTable opacityTable(float alpha)
{
    ByteTable table{};
    const double share = std::clamp(static_cast<double>(alpha), 0.0, 1.0);
    for (int i = 0; i < 256; ++i)
        table[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(i * share + 0.5);
    return table;
}

} // namespace

UIImage brightenWithValue(const UIImage& image, float value)
{
    if (!std::isfinite(value))
        return {};
    return picture(linearlyMapped(image, {value, 1, 0}), image);
}

UIImage contrastAdjustmentWithValue(const UIImage& image, float value)
{
    const float factor = ((value + 255.0F) * 259.0F) / ((259.0F - value) * 255.0F);
    if (!std::isfinite(value) || std::isnan(factor))
        return {};
    // From 256 upwards all but the middle is cut, and an infinite factor would leave the middle without a value.
    return picture(linearlyMapped(image, {-128, std::clamp(factor, -1000.0F, 1000.0F), 128}), image);
}

UIImage gammaCorrectionWithValue(const UIImage& image, float value)
{
    if (!std::isfinite(value))
        return {};
    const ByteTable table = gammaTable(value);
    ByteTable same{};
    std::iota(same.begin(), same.end(), std::uint8_t{0});
    return picture(changedRows(workingRows(image), [&](const ColorRow& row) { lookUp(table, same, row); }));
}

UIImage invert(const UIImage& image)
{
    return picture(linearlyMapped(image, {0, -1, 255}));
}

UIImage sepia(const UIImage& image)
{
    constexpr filters::ColorMatrix kBrown{{
        {0.393F, 0.769F, 0.189F},
        {0.349F, 0.686F, 0.168F},
        {0.272F, 0.534F, 0.131F},
    }};
    auto surface = changedRows(workingRows(image), [&](const ColorRow& row) { filters::mixColors(kBrown, row); });
    return picture(std::move(surface), image);
}

UIImage opacity(const UIImage& image, float alpha)
{
    const std::optional<IntSize> size = wholePixels(image.size().width, image.size().height);
    if (!std::isfinite(alpha) || !size)
        return {};
    const ByteTable table = opacityTable(alpha);
    return picture(changedRows(DrawnRows::make(image.cgImage(), *size, true),
                               [&](const ColorRow& row) { lookUp(table, table, row); }));
}

UIImage autoEnhance(const UIImage& image)
{
    return image;
}

UIImage redEyeCorrection(const UIImage& image)
{
    return image;
}

} // namespace lamina
