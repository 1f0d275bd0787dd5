#pragma once

#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PixelBuffer.h"
#include "platform/image/pixels/UIImage.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace lamina {

/// Rows of RGBA with straight alpha being filled by a decoder, in any order.
class PictureBuilder {
public:
    /// Empty (false) when memory is short. Sides in pixels, already accepted by `checkClaim`.
    PictureBuilder(int width, int height);
    explicit operator bool() const { return static_cast<bool>(m_buffer); }

    int width() const { return m_width; }
    int height() const { return m_height; }
    std::size_t bytesPerRow() const { return 4 * static_cast<std::size_t>(m_width); }
    std::uint8_t* row(int y) { return m_buffer.data() + static_cast<std::size_t>(y) * bytesPerRow(); }

    /// Ends the work. `translucent`: whether alpha bytes were written (otherwise they are set to 255 here; with it, a
    /// picture whose alpha is 255 throughout still becomes `NoneSkipLast`). `iccProfile`: an RGB or grey profile that
    /// the rows are in, empty for sRGB; one that can't be used is ignored.
    UIImage finish(bool translucent, std::span<const std::uint8_t> iccProfile, UIImageOrientation orientation) &&;
    /// The same for rows whose alpha bytes were written as 255, which saves a walk over the pixels.
    UIImage finishOpaque(std::span<const std::uint8_t> iccProfile, UIImageOrientation orientation) &&;

private:
    UIImage finishWith(CGImageAlphaInfo alpha, std::span<const std::uint8_t> iccProfile,
                       UIImageOrientation orientation) &&;

    int m_width;
    int m_height;
    PixelBuffer m_buffer;
};

} // namespace lamina
