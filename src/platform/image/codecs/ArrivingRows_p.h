#pragma once

#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/ColorConversion.h"
#include "platform/image/pixels/PixelBuffer.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace lamina {

/// Rows of RGBA with straight alpha of a picture that is still arriving. Pictures that are made of them share their
/// memory, which lives as long as any of them: rows that were handed out may not be written again.
class ArrivingRows {
public:
    ArrivingRows() = default;
    /// Empty (false) when memory is short. Sides in pixels, already accepted by `checkClaim`. The rows hold anything.
    ArrivingRows(int width, int height);
    explicit operator bool() const { return m_buffer && *m_buffer; }

    int width() const { return m_width; }
    int height() const { return m_height; }
    std::size_t bytesPerRow() const { return 4 * static_cast<std::size_t>(m_width); }
    std::uint8_t* row(int y) { return m_buffer->data() + static_cast<std::size_t>(y) * bytesPerRow(); }
    /// Some rows, to be converted.
    PixelRows rows(int first, int count) { return {row(first), m_width, count, bytesPerRow()}; }

    /// The first `count` rows; the empty picture of none.
    CGImage picture(int count, CGImageAlphaInfo alpha) const;

private:
    int m_width = 0;
    int m_height = 0;
    std::shared_ptr<PixelBuffer> m_buffer;
};

} // namespace lamina
