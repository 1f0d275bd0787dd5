#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/image/drawing/SourcePixels.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PixelBuffer.h"
#include "platform/image/pixels/UIImage.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace lamina {

/// A size in whole pixels, each side truncated; what is whole but for the last bits of a product counts as whole.
/// Nothing when a side is below one pixel, not finite, or longer than 2^18 pixels, or the area is above 2^27 pixels
/// (half a gigabyte).
std::optional<IntSize> wholePixels(double width, double height);

/// The bitmap of the picture operations: four bytes a pixel, A R G B in memory, 8 bits each, device RGB, rows without
/// padding. With alpha it is premultiplied; without, the first byte is not looked at, and is kept at 255. Row 0 is the
/// top row. Move-only; rows may be written from several threads at once.
class DrawingSurface {
public:
    /// Not initialised. Nothing when `wholePixels` refuses the size, or memory is short.
    static std::optional<DrawingSurface> make(IntSize size, bool hasAlpha);

    int width() const { return m_size.width; }
    int height() const { return m_size.height; }
    IntSize size() const { return m_size; }
    bool hasAlpha() const { return m_hasAlpha; }
    /// 4 · width: rows have no padding.
    std::size_t bytesPerRow() const { return 4 * static_cast<std::size_t>(m_size.width); }
    /// The `bytesPerRow` bytes of row y, from 0 at the top to height - 1; not checked. Valid until the bytes are given
    /// up.
    std::uint8_t* row(int y) { return m_buffer.data() + static_cast<std::size_t>(y) * bytesPerRow(); }
    const std::uint8_t* row(int y) const { return m_buffer.data() + static_cast<std::size_t>(y) * bytesPerRow(); }

    /// Gives the bytes up: PremultipliedFirst with alpha, NoneSkipFirst without.
    CGImage makeImage() &&;
    /// The same as a picture of that scale (pixels a point) and orientation; the pixels stay as they are.
    UIImage makePicture(double scale = 1, UIImageOrientation orientation = UIImageOrientation::Up) &&;

private:
    DrawingSurface(PixelBuffer buffer, IntSize size, bool hasAlpha);

    PixelBuffer m_buffer;
    IntSize m_size;
    bool m_hasAlpha = false;
};

/// The rows of a surface that a picture is drawn on, before anything has been allocated for it: where the surface has
/// the picture's own size each row is converted as it is asked for, so that an operation on it moves every byte once;
/// otherwise the picture is resampled once, with the high quality of `resampled`. A mask is applied. The orientation is
/// not looked at. Holds the picture. Rows may be read from several threads at once.
class DrawnRows {
public:
    /// Stored pixels stretched over `size`, with alpha when the pixels carry it before or behind their colours (a mask
    /// and coverage alone don't count), or as `hasAlpha` says (a clear part of a picture is black without it). Nothing
    /// without a picture, for a size that `wholePixels` refuses, or when memory is short.
    static std::optional<DrawnRows> make(const CGImage& image, IntSize size);
    static std::optional<DrawnRows> make(const CGImage& image, IntSize size, bool hasAlpha);

    int width() const { return m_size.width; }
    int height() const { return m_size.height; }
    IntSize size() const { return m_size; }
    bool hasAlpha() const { return m_hasAlpha; }

    /// Row y as R G B A, for those who put alpha first while they compute: where it lies in memory, or converted into
    /// `scratch` of 4 · width bytes. The bits of `filledAlpha` are to be set in every alpha.
    const std::uint8_t* rgba(int y, std::uint8_t* scratch) const { return m_pixels.row(0, y, m_size.width, scratch); }
    std::uint8_t filledAlpha() const { return !m_hasAlpha || m_pixels.forcesOpaque() ? 255 : 0; }

    /// Row y in the surface's form, into 4 · width bytes.
    void read(int y, std::uint8_t* argb) const;
    /// All rows, split over the worker pool.
    std::optional<DrawingSurface> draw() const;

private:
    DrawnRows(SourcePixels pixels, IntSize size, bool hasAlpha);

    SourcePixels m_pixels;
    IntSize m_size;
    bool m_hasAlpha = false;
};

/// The rows of the working surface of the pixel filters: the picture's size in *points*, truncated, whatever its scale;
/// a picture of scale 2 is halved. The stored pixels are stretched over it, and the orientation is not looked at.
std::optional<DrawnRows> workingRows(const UIImage& image);

} // namespace lamina
