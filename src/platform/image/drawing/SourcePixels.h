#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PixelBuffer.h"
#include "platform/image/pixels/PixelConversion.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

namespace lamina {

/// The pixels of a picture as drawing and resampling read them: four channels premultiplied (R G B A), four channels of
/// ink (C M Y K), or one (grey, coverage). Rows that lie in memory in that form are read where they are, others are
/// converted row by row. A cheap value that keeps the picture alive; usable from several threads at once.
class SourcePixels {
public:
    /// Any picture, in sRGB.
    static SourcePixels rgba(const CGImage& image);
    /// The picture's own components, when it is of 8 bits without alpha, grey, alpha only or CMYK; nothing otherwise.
    static std::optional<SourcePixels> components(const CGImage& image);
    /// One byte a pixel of how much a mask lets through: the value of a grey picture without alpha (`inverted`: black
    /// shows), the alpha of any other.
    static SourcePixels coverage(const CGImage& mask, bool inverted);

    int width() const { return m_image.width(); }
    int height() const { return m_image.height(); }
    /// Bytes a pixel: 1 or 4.
    int channels() const { return m_channels; }
    /// No alpha: a fourth byte of R G B A that is read may hold anything and counts as 255.
    bool forcesOpaque() const { return m_forcesOpaque; }
    /// Alpha that colours must not exceed.
    bool hasAlpha() const { return m_hasAlpha; }

    /// Whether rows can be read where they are.
    bool isDirect() const { return m_load == Load::Direct; }
    const std::uint8_t* directRow(int y) const { return m_image.row(y); }
    std::size_t stride() const { return m_image.bytesPerRow(); }
    /// Pixels [x, x + count) of row y, into `out` unless they can be read in place.
    const std::uint8_t* row(int x, int y, int count, std::uint8_t* out) const;

    /// A part with x and y exchanged; nothing when memory is short.
    std::optional<SourcePixels> transposed(const IntRect& part) const;
    /// A part with rows that can be read directly; nothing when memory is short.
    std::optional<SourcePixels> directPart(const IntRect& part) const;

    /// Rows just made: RGBA premultiplied (or opaque), or one byte a pixel.
    static SourcePixels fromBuffer(PixelBuffer buffer, IntSize size, const SourcePixels& like);

private:
    enum class Load { Direct, Premultiply, Convert, ConvertValue, ConvertAlpha, Invert };

    CGImage m_image;
    std::shared_ptr<const RowConverter> m_converter;
    Load m_load = Load::Direct;
    int m_channels = 4;
    bool m_forcesOpaque = false;
    bool m_hasAlpha = false;
    bool m_inverted = false;
};

} // namespace lamina
