#include "editors/colorpicker/ColorImages.h"

#include "platform/image/pixels/PixelBuffer.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

namespace lamina {

namespace {

constexpr unsigned kMost = 255;

/// The value at full brightness of a column, of a component that loses `lost` of 255 from the left to the right.
constexpr unsigned columnValue(unsigned column, unsigned lost)
{
    return kMost - column * lost / kMost;
}

unsigned lostOf(float factor)
{
    return static_cast<unsigned>((1 - factor) * kMost);
}

std::uint8_t byteOf(float component)
{
    return static_cast<std::uint8_t>(component * kMost);
}

float& componentOf(HSBColor& color, HSBComponent component)
{
    switch (component) {
    case HSBComponent::Hue:
        return color.hue;
    case HSBComponent::Saturation:
        return color.saturation;
    case HSBComponent::Brightness:
        break;
    }
    return color.brightness;
}

/// The columns at full brightness, red and blue of each in one word and green in another: so one multiplication serves
/// two components, since 255 · 255 has 16 bits.
struct SquareColumns {
    std::array<std::uint32_t, kColorImageWidth> redAndBlue{};
    std::array<std::uint32_t, kColorImageWidth> green{};
};

SquareColumns squareColumns(const RGBComponents& factors)
{
    const unsigned red = lostOf(factors.red);
    const unsigned green = lostOf(factors.green);
    const unsigned blue = lostOf(factors.blue);
    SquareColumns columns;
    for (unsigned s = 0; s < kColorImageWidth; ++s) {
        columns.redAndBlue[s] = columnValue(s, red) << 16U | columnValue(s, blue);
        columns.green[s] = columnValue(s, green);
    }
    return columns;
}

} // namespace

CGImageLayout colorImageLayout(int height)
{
    CGImageLayout layout;
    layout.width = kColorImageWidth;
    layout.height = height;
    layout.bytesPerRow = kColorImageRowBytes;
    layout.bitmapInfo = bitmapInfo(CGImageAlphaInfo::NoneSkipFirst, kCGBitmapByteOrder32Little);
    return layout;
}

CGImage hsbSweepImage(HSBComponent component, const HSBColor& base)
{
    std::array<std::uint8_t, kColorImageRowBytes> row{};
    for (std::size_t i = 0; i < kColorImageWidth; ++i) {
        HSBColor color = base;
        componentOf(color, component) = static_cast<float>(i) / kMost;
        const RGBComponents rgb = rgbFromHSB(color);
        row[4 * i] = byteOf(rgb.blue);
        row[4 * i + 1] = byteOf(rgb.green);
        row[4 * i + 2] = byteOf(rgb.red);
    }
    PixelBuffer buffer = PixelBuffer::allocate(row.size());
    if (!buffer)
        return {};
    std::copy(row.begin(), row.end(), buffer.data());
    return CGImage::make(colorImageLayout(1), std::move(buffer));
}

void fillColorSquare(float hue, ColorSquarePixels& pixels)
{
    static_assert(std::endian::native == std::endian::little, "the lowest byte of a word is its first");
    const SquareColumns columns = squareColumns(hueFactors(hue * kHueDegrees));
    std::uint32_t* pixel = pixels.data();
    for (unsigned row = 0; row < kColorSquareHeight; ++row) {
        const std::uint32_t v = kMost - row;
        for (std::size_t s = 0; s < kColorImageWidth; ++s)
            *pixel++ = (v * columns.redAndBlue[s] >> 8U & 0x00FF00FFU) | (v * columns.green[s] & 0x0000FF00U);
    }
}

} // namespace lamina
