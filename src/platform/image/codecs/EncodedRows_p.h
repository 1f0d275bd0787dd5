#pragma once

#include "platform/base/UIColor.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PixelConversion.h"

#include <array>
#include <cstddef>
#include <cstdint>

/// The rows that encoders write.
namespace lamina {

/// What a file keeps of each pixel. The values are PNG's.
enum class StoredColors : std::uint8_t { Gray = 0, RGB = 2, GrayAlpha = 4, RGBA = 6 };

constexpr std::size_t storedBytes(StoredColors colors)
{
    switch (colors) {
    case StoredColors::Gray:
        return 1;
    case StoredColors::GrayAlpha:
        return 2;
    case StoredColors::RGB:
        return 3;
    case StoredColors::RGBA:
        break;
    }
    return 4;
}

/// The least that keeps the picture whole. `rows` is a straight converter of it.
StoredColors chooseStoredColors(const CGImage& image, const RowConverter& rows);

/// `width` pixels of RGBA as they are stored.
void packRow(const std::uint8_t* rgba, std::size_t width, StoredColors colors, std::uint8_t* out);

/// Rows of a picture composited over a colour, for formats without alpha.
class FlattenedRows {
public:
    /// The picture has no mask. The colour's components are clamped to [0, 1]; where it is translucent it lies on
    /// white.
    FlattenedRows(const CGImage& image, const UIColor& background);

    int width() const { return m_width; }
    int height() const { return m_height; }
    /// Red, green and blue are equal in every pixel.
    bool isGray() const { return m_gray; }
    bool hasAlpha() const { return m_hasAlpha; }

    /// Row y as R G B A, 4 · width bytes: colours as they lie on the background, alpha as it was before.
    void read(int y, std::uint8_t* rgba) const;
    /// The same where it lies in memory already, but for its alpha; null: it has to be read. Valid as long as this.
    const std::uint8_t* stored(int y) const { return m_plain ? m_image.row(y) : nullptr; }
    /// Rows [first, first + count) one after another, split over the worker pool.
    void readBand(int first, int count, std::uint8_t* rgba) const;

private:
    CGImage m_image;
    RowConverter m_rows;
    int m_width;
    int m_height;
    std::array<unsigned, 3> m_background;
    bool m_plain;
    bool m_hasAlpha;
    bool m_gray;
};

} // namespace lamina
