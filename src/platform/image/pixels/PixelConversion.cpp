#include "platform/image/pixels/PixelConversion.h"

#include "platform/base/WorkerPool.h"
#include "platform/image/pixels/PixelArithmetic.h"
#include "platform/image/pixels/PixelBuffer.h"
#include "platform/image/pixels/PixelKernels.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace lamina {

namespace {

/// Reads components of any size out of a row, most significant bit first.
class ComponentReader {
public:
    ComponentReader(const CGImage& image, int y)
        : m_row(image.row(y), image.bytesPerRow())
        , m_flip(swappedUnit(image.bitmapInfo()) - 1)
        , m_bits(static_cast<unsigned>(image.bitsPerComponent()))
        , m_float((image.bitmapInfo() & kCGBitmapFloatComponents) != 0)
    {
    }

    /// The component that begins at a bit of the row, as 8 bits.
    std::uint8_t at(std::size_t bit) const
    {
        std::uint64_t window = 0; // the up to five bytes that hold it
        const std::size_t first = bit / 8;
        for (std::size_t i = 0; i < 5; ++i)
            window = window << 8 | byte(first + i);
        const std::uint32_t largest = m_bits >= 32 ? 0xFFFFFFFFu : (1u << m_bits) - 1;
        const auto value = static_cast<std::uint32_t>(window >> (40 - bit % 8 - m_bits)) & largest;
        if (!m_float)
            return to8Bits(value, largest);
        const float number = std::bit_cast<float>(value);
        return number > 0 ? static_cast<std::uint8_t>(std::lround(std::min(number, 1.0F) * 255)) : std::uint8_t{0};
    }

private:
    std::uint8_t byte(std::size_t index) const
    {
        const std::size_t place = index ^ m_flip;
        return place < m_row.size() ? m_row[place] : std::uint8_t{0};
    }

    std::span<const std::uint8_t> m_row;
    std::size_t m_flip;
    unsigned m_bits;
    bool m_float;
};

} // namespace

RowConverter::RowConverter(CGImage image, AlphaForm form)
    : m_image(std::move(image))
    , m_form(form)
{
    if (!m_image)
        return;
    const CGImageLayout& layout = m_image.layout();
    const CGColorSpace::Model model = layout.colorSpace.model();
    m_inks = model == CGColorSpace::Model::CMYK;
    m_colors = ColorConversion::toSRGB(layout.colorSpace.iccProfile(), model);
    m_hasAlpha = m_image.hasAlpha();
    m_premultiplied = isPremultiplied(layout.alphaInfo());

    const bool bytes = layout.bitsPerComponent == 8 && (layout.bitmapInfo & kCGBitmapFloatComponents) == 0;
    const bool inBytes32 = bytes && layout.bitsPerPixel == 32 && (model == CGColorSpace::Model::RGB || m_inks);
    if (inBytes32) {
        m_path = Path::Bytes32;
        m_order = componentPlaces(m_inks ? layout.bitmapInfo & ~kCGBitmapAlphaInfoMask : layout.bitmapInfo);
    } else if (bytes && layout.bitsPerPixel == 8 && model == CGColorSpace::Model::Gray &&
               swappedUnit(layout.bitmapInfo) == 1) {
        m_path = Path::Gray8;
    }
}

void RowConverter::convert(int x, int y, int count, std::uint8_t* rgba) const
{
    unpack(x, y, count, rgba);
    const bool wantsPremultiplied = m_form == AlphaForm::Premultiplied;
    const bool mustBeStraight = m_hasAlpha && m_premultiplied && !m_inks && (m_colors || !wantsPremultiplied);
    if (mustBeStraight)
        kernels::unpremultiply(rgba, static_cast<std::size_t>(count));
    if (m_colors)
        m_colors->convertRow(rgba, count);
    else if (m_inks)
        convertDeviceCMYK(rgba, count);
    if (m_inks && m_hasAlpha) // the fourth byte held the black ink until now
        unpackAlpha(x, y, count, rgba);
    if (wantsPremultiplied && m_hasAlpha && (mustBeStraight || !m_premultiplied || m_inks))
        kernels::premultiply(rgba, static_cast<std::size_t>(count), rgba);
}

void RowConverter::unpack(int x, int y, int count, std::uint8_t* rgba) const
{
    const auto skipped = static_cast<std::size_t>(x);
    switch (m_path) {
    case Path::Bytes32:
        unpackBytes32(m_image.row(y) + 4 * skipped, count, rgba);
        break;
    case Path::Gray8: {
        const std::uint8_t* source = m_image.row(y) + skipped;
        for (int i = 0; i < count; ++i, rgba += 4) {
            rgba[0] = rgba[1] = rgba[2] = source[i];
            rgba[3] = 255;
        }
        break;
    }
    case Path::Any:
        unpackAny(x, y, count, rgba);
        break;
    }
}

void RowConverter::unpackBytes32(const std::uint8_t* source, int count, std::uint8_t* rgba) const
{
    const std::array<std::uint8_t, 4> opaque{0, 0, 0, static_cast<std::uint8_t>(m_hasAlpha || m_inks ? 0 : 255)};
    kernels::reorder(source, static_cast<std::size_t>(count), m_order, std::bit_cast<std::uint32_t>(opaque), rgba);
}

std::size_t RowConverter::componentBit(int x, int component) const
{
    const CGImageLayout& layout = m_image.layout();
    const int colors = layout.colorSpace.componentCount();
    const bool first = alphaStandsFirst(layout.alphaInfo());
    int bit = component * layout.bitsPerComponent; // alpha behind the colours counts as one more of them
    if (first && component < colors)
        bit += layout.bitsPerPixel - colors * layout.bitsPerComponent;
    else if (first)
        bit = 0;
    return static_cast<std::size_t>(x) * static_cast<std::size_t>(layout.bitsPerPixel) + static_cast<std::size_t>(bit);
}

void RowConverter::unpackAny(int x, int y, int count, std::uint8_t* rgba) const
{
    const ComponentReader reader(m_image, y);
    const int colors = m_image.colorSpace().componentCount();
    std::uint8_t* pixel = rgba;
    for (int i = x; i < x + count; ++i, pixel += 4) {
        pixel[0] = pixel[1] = pixel[2] = 0;
        pixel[3] = 255;
        for (int c = 0; c < colors; ++c)
            pixel[c] = reader.at(componentBit(i, c));
        if (colors == 1)
            pixel[1] = pixel[2] = pixel[0];
    }
    if (m_hasAlpha && !m_inks)
        unpackAlpha(x, y, count, rgba);
}

void RowConverter::unpackAlpha(int x, int y, int count, std::uint8_t* rgba) const
{
    const ComponentReader reader(m_image, y);
    const int alpha = m_image.colorSpace().componentCount();
    for (int i = x; i < x + count; ++i, rgba += 4)
        rgba[3] = reader.at(componentBit(i, alpha));
}

CGImage coverageOfMask(const CGImage& mask)
{
    if (!mask)
        return {};
    CGImageLayout layout = CGImageLayout::gray(mask.width(), mask.height());
    layout.bitmapInfo = bitmapInfo(CGImageAlphaInfo::Only);
    layout.colorSpace = CGColorSpace::alphaOnly();
    PixelBuffer buffer = PixelBuffer::allocate(layout.byteCount());
    if (!buffer)
        return {};
    // A grey mask's values are amounts and not colours, so no profile of theirs counts.
    CGImageLayout plain = mask.layout();
    const bool alphaOnly = plain.colorSpace.model() == CGColorSpace::Model::AlphaOnly;
    if (plain.colorSpace.model() == CGColorSpace::Model::Gray)
        plain.colorSpace = CGColorSpace::deviceGray();
    const std::shared_ptr<const std::uint8_t> bytes(std::make_shared<CGImage>(mask), mask.bytes().data());
    const RowConverter rows(CGImage::make(plain, bytes, mask.bytes().size()), AlphaForm::Straight);
    parallelRows(0, mask.height(), static_cast<std::size_t>(mask.width()), [&](int first, int last) {
        std::vector<std::uint8_t> rgba(4 * static_cast<std::size_t>(mask.width()));
        for (int y = first; y < last; ++y) {
            rows.convert(0, y, mask.width(), rgba.data());
            std::uint8_t* out = buffer.data() + static_cast<std::size_t>(y) * layout.bytesPerRow;
            for (std::size_t x = 0; x < layout.bytesPerRow; ++x)
                out[x] = alphaOnly ? rgba[4 * x + 3] : static_cast<std::uint8_t>(255 - rgba[4 * x]);
        }
    });
    return CGImage::make(layout, std::move(buffer));
}

} // namespace lamina
