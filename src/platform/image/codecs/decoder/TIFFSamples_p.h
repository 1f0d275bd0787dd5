#pragma once

#include "platform/image/codecs/TIFFFile_p.h"
#include "platform/image/pixels/ColorConversion.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace lamina {

/// How the first page of a TIFF file keeps its pixels, as far as our own conversion knows it.
struct TIFFLayout {
    enum class Color { WhiteIsZero, BlackIsZero, RGB, Palette, CMYK, Lab };
    enum class Alpha { None, Straight, Premultiplied };

    int width = 0;
    int height = 0;
    int bits = 8; ///< a sample: 1 to 16, or 32
    bool isFloat = false;
    int samples = 1; ///< a pixel, extra ones included
    bool separatePlanes = false;
    Color color = Color::BlackIsZero;
    bool signedLab = false; ///< a* and b* below zero are stored as two's complement, not from a shifted zero
    Alpha alpha = Alpha::None;
    int alphaSample = 0;
    /// Of a palette: 2^bits entries, 8 bits a component.
    std::vector<std::array<std::uint8_t, 3>> palette;

    int colorSamples() const
    {
        if (color == Color::CMYK)
            return 4;
        return color == Color::RGB || color == Color::Lab ? 3 : 1;
    }
    /// Samples that decide a pixel's look, in the order in which a converter wants planes: the colours, then alpha.
    std::vector<int> usedSamples() const;

    /// Nothing when the page is of another kind, which libtiff's own conversion may know. Sets the colour mode of the
    /// JPEG codec where that makes the page RGB. Sides and samples are above zero.
    static std::optional<TIFFLayout> read(const TIFFFile& file);
};

/// Turns stored rows into RGBA of 8 bits with straight alpha (255 without). All in 16 bits up to the last step, so that
/// each value is rounded once.
class TIFFRowConverter {
public:
    /// `width`: the most pixels of a row. `inks`: how CMYK becomes RGB; the plain formula when there is none.
    TIFFRowConverter(const TIFFLayout& layout, int width, std::optional<ColorConversion> inks);

    /// `planes`: the row in the stored form, one pointer; with separate planes one for each of `usedSamples`.
    void convert(const std::vector<const std::uint8_t*>& planes, int width, std::uint8_t* out);

private:
    void unpack(const std::uint8_t* in, std::size_t count, std::uint16_t* out, std::size_t step) const;
    void unpackBits(const std::uint8_t* in, std::size_t count, std::uint16_t* out, std::size_t step) const;
    bool convertBytes(const std::uint8_t* in, int width, std::uint8_t* out) const;
    void convertInks(std::size_t pixels, std::uint8_t* out) const;
    void convertColors(std::size_t pixels, std::uint8_t* out) const;
    void labToColors(const std::uint16_t* pixel, std::array<std::uint32_t, 3>& rgb) const;
    std::uint32_t alphaOf(const std::uint16_t* pixel) const;
    std::uint32_t straight(std::uint32_t value, std::uint32_t alpha) const;
    void colorsOf(const std::uint16_t* pixel, std::array<std::uint32_t, 3>& rgb) const;

    const TIFFLayout& m_layout;
    std::size_t m_step;  ///< values from one pixel to the next
    std::size_t m_alpha; ///< index of alpha within a pixel
    std::optional<ColorConversion> m_inks;
    std::vector<std::uint16_t> m_values;
};

} // namespace lamina
