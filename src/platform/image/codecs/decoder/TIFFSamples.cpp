#include "platform/image/codecs/decoder/TIFFSamples_p.h"

#include "platform/image/pixels/PixelArithmetic.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstring>
#include <numeric>

namespace lamina {

namespace {

constexpr std::uint32_t kFull = 65535;

std::uint16_t fromFloat(float value)
{
    // Written so that a value that is not a number becomes 0.
    if (!(value > 0))
        return 0;
    return static_cast<std::uint16_t>(std::min(value, 1.0f) * static_cast<float>(kFull) + 0.5f);
}

template <class T>
T load(const std::uint8_t* from)
{
    T value;
    std::memcpy(&value, from, sizeof value);
    return value;
}

/// Linear light in [0, 1] by the curve of sRGB, in 16 bits.
std::uint32_t encoded(double linear)
{
    const double value = std::clamp(linear, 0.0, 1.0);
    const double curve = value <= 0.0031308 ? 12.92 * value : 1.055 * std::pow(value, 1 / 2.4) - 0.055;
    return static_cast<std::uint32_t>(std::lround(curve * kFull));
}

std::optional<TIFFLayout::Color> colorOf(std::uint16_t photometric)
{
    switch (photometric) {
    case PHOTOMETRIC_MINISWHITE:
        return TIFFLayout::Color::WhiteIsZero;
    case PHOTOMETRIC_MINISBLACK:
        return TIFFLayout::Color::BlackIsZero;
    case PHOTOMETRIC_RGB:
        return TIFFLayout::Color::RGB;
    case PHOTOMETRIC_PALETTE:
        return TIFFLayout::Color::Palette;
    case PHOTOMETRIC_SEPARATED:
        return TIFFLayout::Color::CMYK;
    case PHOTOMETRIC_CIELAB:
    case PHOTOMETRIC_ICCLAB:
        return TIFFLayout::Color::Lab;
    default:
        return std::nullopt;
    }
}

bool readPalette(const TIFFFile& file, TIFFLayout& layout)
{
    std::array<std::uint16_t*, 3> map{};
    if (layout.bits > 8 || file.library().getField(file.handle(), TIFFTAG_COLORMAP, &map[0], &map[1], &map[2]) != 1)
        return false;
    const std::size_t count = std::size_t{1} << layout.bits;
    // The entries have 16 bits; some writers give 8, which shows when none is larger. The others may have multiplied by
    // 256 or by 257: the high byte is right for both.
    bool small = true;
    for (const std::uint16_t* channel : map)
        small = small && std::all_of(channel, channel + count, [](std::uint16_t value) { return value < 256; });
    layout.palette.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        for (std::size_t c = 0; c < 3; ++c)
            layout.palette[i][c] = static_cast<std::uint8_t>(small ? map[c][i] : map[c][i] >> 8);
    }
    return true;
}

void readAlpha(const TIFFFile& file, TIFFLayout& layout)
{
    std::uint16_t count = 0;
    std::uint16_t* kinds = nullptr;
    if (layout.color == TIFFLayout::Color::Palette)
        return;
    const bool told = file.library().getField(file.handle(), TIFFTAG_EXTRASAMPLES, &count, &kinds) == 1 && count > 0;
    if (!told) {
        // A sample too many that nobody explains is alpha, in all likelihood.
        if (layout.samples == layout.colorSamples() + 1) {
            layout.alpha = TIFFLayout::Alpha::Straight;
            layout.alphaSample = layout.colorSamples();
        }
        return;
    }
    for (int i = 0; i < count && layout.colorSamples() + i < layout.samples; ++i) {
        if (kinds[i] != EXTRASAMPLE_ASSOCALPHA && kinds[i] != EXTRASAMPLE_UNASSALPHA)
            continue;
        layout.alpha =
            kinds[i] == EXTRASAMPLE_ASSOCALPHA ? TIFFLayout::Alpha::Premultiplied : TIFFLayout::Alpha::Straight;
        layout.alphaSample = layout.colorSamples() + i;
        return;
    }
}

} // namespace

std::vector<int> TIFFLayout::usedSamples() const
{
    std::vector<int> used(static_cast<std::size_t>(colorSamples()));
    std::iota(used.begin(), used.end(), 0);
    if (alpha != Alpha::None)
        used.push_back(alphaSample);
    return used;
}

std::optional<TIFFLayout> TIFFLayout::read(const TIFFFile& file)
{
    auto photometric = file.field<std::uint16_t>(TIFFTAG_PHOTOMETRIC);
    const auto compression = file.field<std::uint16_t>(TIFFTAG_COMPRESSION).value_or(COMPRESSION_NONE);
    const auto planar = file.field<std::uint16_t>(TIFFTAG_PLANARCONFIG).value_or(PLANARCONFIG_CONTIG);
    const auto format = file.field<std::uint16_t>(TIFFTAG_SAMPLEFORMAT).value_or(SAMPLEFORMAT_UINT);
    TIFFLayout layout;
    layout.width = static_cast<int>(file.field<std::uint32_t>(TIFFTAG_IMAGEWIDTH).value_or(0));
    layout.height = static_cast<int>(file.field<std::uint32_t>(TIFFTAG_IMAGELENGTH).value_or(0));
    layout.bits = file.field<std::uint16_t>(TIFFTAG_BITSPERSAMPLE).value_or(1);
    layout.samples = file.field<std::uint16_t>(TIFFTAG_SAMPLESPERPIXEL).value_or(1);
    layout.separatePlanes = planar == PLANARCONFIG_SEPARATE;
    layout.isFloat = format == SAMPLEFORMAT_IEEEFP;

    if (photometric == PHOTOMETRIC_YCBCR && compression == COMPRESSION_JPEG && !layout.separatePlanes) {
        if (file.library().setField(file.handle(), TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB) != 1)
            return std::nullopt;
        photometric = PHOTOMETRIC_RGB;
    }
    const auto color = photometric ? colorOf(*photometric) : std::nullopt;
    const bool numbers = layout.isFloat ? layout.bits == 32
                                        : (format == SAMPLEFORMAT_UINT || format == SAMPLEFORMAT_VOID) &&
                                              ((layout.bits >= 1 && layout.bits <= 16) || layout.bits == 32);
    if (!color || !numbers || layout.width <= 0 || layout.height <= 0)
        return std::nullopt;
    layout.color = *color;
    if (layout.samples < layout.colorSamples())
        return std::nullopt;
    if (layout.color == Color::Palette && (layout.isFloat || !readPalette(file, layout)))
        return std::nullopt;
    if (layout.color == Color::CMYK && file.field<std::uint16_t>(TIFFTAG_INKSET).value_or(INKSET_CMYK) != INKSET_CMYK)
        return std::nullopt;
    layout.signedLab = photometric == PHOTOMETRIC_CIELAB;
    if (layout.color == Color::Lab && (layout.isFloat || (layout.bits != 8 && layout.bits != 16)))
        return std::nullopt;
    readAlpha(file, layout);
    return layout;
}

TIFFRowConverter::TIFFRowConverter(const TIFFLayout& layout, int width, std::optional<ColorConversion> inks)
    : m_layout(layout)
    , m_step(layout.separatePlanes ? layout.usedSamples().size() : static_cast<std::size_t>(layout.samples))
    , m_alpha(static_cast<std::size_t>(layout.separatePlanes ? layout.colorSamples() : layout.alphaSample))
    , m_inks(std::move(inks))
    , m_values(static_cast<std::size_t>(width) * m_step)
{
}

void TIFFRowConverter::unpackBits(const std::uint8_t* in, std::size_t count, std::uint16_t* out, std::size_t step) const
{
    const auto bits = static_cast<unsigned>(m_layout.bits);
    assert(bits > 0 && bits < 32);
    const std::uint32_t largest = (1u << bits) - 1;
    const bool isIndex = m_layout.color == TIFFLayout::Color::Palette;
    std::uint32_t pending = 0;
    unsigned available = 0;
    for (std::size_t i = 0; i < count; ++i, out += step) {
        while (available < bits) {
            pending = pending << 8 | *in++;
            available += 8;
        }
        available -= bits;
        const std::uint32_t value = pending >> available & largest;
        *out = static_cast<std::uint16_t>(isIndex ? value : (value * kFull + largest / 2) / largest);
    }
}

void TIFFRowConverter::unpack(const std::uint8_t* in, std::size_t count, std::uint16_t* out, std::size_t step) const
{
    const std::uint16_t scale = m_layout.color == TIFFLayout::Color::Palette ? 1 : 257;
    if (m_layout.isFloat) {
        for (std::size_t i = 0; i < count; ++i)
            out[i * step] = fromFloat(load<float>(in + 4 * i));
    } else if (m_layout.bits == 8) {
        for (std::size_t i = 0; i < count; ++i)
            out[i * step] = static_cast<std::uint16_t>(in[i] * scale);
    } else if (m_layout.bits == 16) {
        for (std::size_t i = 0; i < count; ++i)
            out[i * step] = load<std::uint16_t>(in + 2 * i);
    } else if (m_layout.bits == 32) {
        // 2^32 - 1 is 65537 times the largest of 16 bits.
        for (std::size_t i = 0; i < count; ++i)
            out[i * step] =
                static_cast<std::uint16_t>((load<std::uint32_t>(in + 4 * i) + std::uint64_t{32768}) / 65537);
    } else {
        unpackBits(in, count, out, step);
    }
}

bool TIFFRowConverter::convertBytes(const std::uint8_t* in, int width, std::uint8_t* out) const
{
    using Color = TIFFLayout::Color;
    const bool gray = m_layout.color == Color::BlackIsZero;
    if (m_layout.bits != 8 || m_layout.separatePlanes || m_layout.alpha == TIFFLayout::Alpha::Premultiplied ||
        !(gray || m_layout.color == Color::RGB))
        return false;
    const bool alpha = m_layout.alpha != TIFFLayout::Alpha::None;
    for (int x = 0; x < width; ++x, in += m_step, out += 4) {
        out[0] = in[0];
        out[1] = in[gray ? 0 : 1];
        out[2] = in[gray ? 0 : 2];
        out[3] = alpha ? in[m_alpha] : 255;
    }
    return true;
}

void TIFFRowConverter::labToColors(const std::uint16_t* pixel, std::array<std::uint32_t, 3>& rgb) const
{
    const auto chroma = [this](std::uint16_t value) {
        // Values of 8 bits came as 257 times themselves.
        const double stored = m_layout.bits == 8 ? value >> 8 : value / 256.0;
        if (m_layout.signedLab)
            return stored >= 128 ? stored - 256 : stored;
        return stored - 128;
    };
    const double y = (pixel[0] * 100.0 / kFull + 16) / 116;
    const std::array<double, 3> roots{y + chroma(pixel[1]) / 500, y, y - chroma(pixel[2]) / 200};
    constexpr std::array<double, 3> kWhite{0.96422, 1, 0.82521}; // D50
    std::array<double, 3> xyz{};
    for (std::size_t i = 0; i < 3; ++i) {
        const double root = roots[i];
        xyz[i] = kWhite[i] * (root > 6.0 / 29 ? root * root * root : 108.0 / 841 * (root - 4.0 / 29));
    }
    // XYZ of D50 to linear sRGB, adapted by Bradford's method (Lindbloom, "RGB/XYZ Matrices").
    constexpr double kMatrix[3][3] = {
        {3.1338561, -1.6168667, -0.4906146}, {-0.9787684, 1.9161415, 0.0334540}, {0.0719453, -0.2289914, 1.4052427}};
    for (std::size_t i = 0; i < 3; ++i)
        rgb[i] = encoded(kMatrix[i][0] * xyz[0] + kMatrix[i][1] * xyz[1] + kMatrix[i][2] * xyz[2]);
}

void TIFFRowConverter::colorsOf(const std::uint16_t* pixel, std::array<std::uint32_t, 3>& rgb) const
{
    switch (m_layout.color) {
    case TIFFLayout::Color::WhiteIsZero:
        rgb.fill(kFull - pixel[0]);
        break;
    case TIFFLayout::Color::BlackIsZero:
        rgb.fill(pixel[0]);
        break;
    case TIFFLayout::Color::RGB:
        std::copy_n(pixel, 3, rgb.begin());
        break;
    case TIFFLayout::Color::Palette:
        for (std::size_t c = 0; c < 3; ++c)
            rgb[c] = m_layout.palette[pixel[0]][c] * 257u;
        break;
    case TIFFLayout::Color::Lab:
        labToColors(pixel, rgb);
        break;
    case TIFFLayout::Color::CMYK:
        for (std::size_t c = 0; c < 3; ++c)
            rgb[c] = ((kFull - pixel[c]) * (kFull - pixel[3]) + kFull / 2) / kFull;
        break;
    }
}

std::uint32_t TIFFRowConverter::alphaOf(const std::uint16_t* pixel) const
{
    return m_layout.alpha == TIFFLayout::Alpha::None ? kFull : pixel[m_alpha];
}

std::uint32_t TIFFRowConverter::straight(std::uint32_t value, std::uint32_t alpha) const
{
    if (m_layout.alpha != TIFFLayout::Alpha::Premultiplied)
        return value;
    return alpha == 0 ? 0 : std::min(kFull, (value * kFull + alpha / 2) / alpha);
}

void TIFFRowConverter::convertInks(std::size_t pixels, std::uint8_t* out) const
{
    const std::uint16_t* pixel = m_values.data();
    for (std::size_t x = 0; x < pixels; ++x, pixel += m_step) {
        for (std::size_t c = 0; c < 4; ++c)
            out[4 * x + c] = from16Bits(straight(pixel[c], alphaOf(pixel)));
    }
    m_inks->convertRow(out, static_cast<int>(pixels));
    pixel = m_values.data();
    for (std::size_t x = 0; x < pixels; ++x, pixel += m_step)
        out[4 * x + 3] = from16Bits(alphaOf(pixel));
}

void TIFFRowConverter::convertColors(std::size_t pixels, std::uint8_t* out) const
{
    const std::uint16_t* pixel = m_values.data();
    std::array<std::uint32_t, 3> rgb{};
    for (std::size_t x = 0; x < pixels; ++x, pixel += m_step, out += 4) {
        colorsOf(pixel, rgb);
        const std::uint32_t alpha = alphaOf(pixel);
        for (std::size_t c = 0; c < 3; ++c)
            out[c] = from16Bits(straight(rgb[c], alpha));
        out[3] = from16Bits(alpha);
    }
}

void TIFFRowConverter::convert(const std::vector<const std::uint8_t*>& planes, int width, std::uint8_t* out)
{
    if (convertBytes(planes[0], width, out))
        return;
    const auto pixels = static_cast<std::size_t>(width);
    if (m_layout.separatePlanes) {
        for (std::size_t i = 0; i < planes.size(); ++i)
            unpack(planes[i], pixels, m_values.data() + i, m_step);
    } else {
        unpack(planes[0], pixels * m_step, m_values.data(), 1);
    }
    if (m_inks)
        convertInks(pixels, out);
    else
        convertColors(pixels, out);
}

} // namespace lamina
