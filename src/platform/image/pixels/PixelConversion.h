#pragma once

#include "platform/image/pixels/AlphaForm.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/ColorConversion.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace lamina {

/// Turns stretches of rows of a CGImage, whatever its layout, into RGBA of 8 bits a component in sRGB.
///
/// It reads all bit depths (1 to 16 bits a component, 32-bit floats), grey, RGB, CMYK and alpha only, alpha before or
/// behind, both byte orders (the most significant byte first unless the layout says otherwise), and converts profiles.
/// Values are rounded to the nearest; floats are clamped to [0, 1]. A picture without alpha gives alpha 255; an
/// alpha-only one gives black under its alpha. Alpha beside CMYK is read as straight. The picture's mask is not looked
/// at.
///
/// Usable from several threads at once. Holds a copy of the picture. Made once per picture: a profile takes up to some
/// milliseconds to prepare.
class RowConverter {
public:
    RowConverter(CGImage image, AlphaForm form);

    /// Pixels [x, x + count) of row y into `rgba`, 4 · count bytes. The range must lie inside the picture.
    void convert(int x, int y, int count, std::uint8_t* rgba) const;

private:
    enum class Path { Bytes32, Gray8, Any };
    using Order = std::array<std::uint8_t, 4>;
    static constexpr Order kPlainOrder{0, 1, 2, 3};

    void unpack(int x, int y, int count, std::uint8_t* rgba) const;
    void unpackBytes32(const std::uint8_t* source, int count, std::uint8_t* rgba) const;
    void unpackAny(int x, int y, int count, std::uint8_t* rgba) const;
    void unpackAlpha(int x, int y, int count, std::uint8_t* rgba) const;
    std::size_t componentBit(int x, int component) const;

    CGImage m_image;
    AlphaForm m_form;
    std::optional<ColorConversion> m_colors;
    Path m_path = Path::Any;
    Order m_order = kPlainOrder; ///< Bytes32: where R, G, B and A (or C, M, Y, K) lie in a pixel
    bool m_inks = false;
    bool m_hasAlpha = false;
    bool m_premultiplied = false;
};

/// What a mask lets through as an alpha-only picture of 8 bits and the mask's size (see CGImage::withMask for the
/// senses). Empty when the mask is, or memory is short.
CGImage coverageOfMask(const CGImage& mask);

/// The picture as RGBA of 8 bits in sRGB, rows without padding: `Last` (straight) when it has alpha or a mask,
/// `NoneSkipLast` with 255 as fourth byte otherwise. The mask is applied, stretched over the picture by linear
/// interpolation. Empty when the picture is empty or memory is short.
CGImage convertedToSRGB(const CGImage& image);

} // namespace lamina
