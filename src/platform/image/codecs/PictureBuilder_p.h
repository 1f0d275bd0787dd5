#pragma once

#include "platform/base/Result.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PixelBuffer.h"
#include "platform/image/pixels/UIImage.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>

namespace lamina {

/// Where builders have their memory from: `PixelBuffer::allocate`, unless a program that hands its pixels on says
/// otherwise. To be set while nothing is decoded; null sets it back.
using PixelMemory = PixelBuffer (*)(std::size_t size);
void setPixelMemory(PixelMemory memory);

/// Rows of RGBA with straight alpha being filled by a decoder, in any order. What is done to all of them ends within
/// some rows once the options' flag is set.
class PictureBuilder {
public:
    /// Empty (false) when memory is short. Sides in pixels, already accepted by `checkClaim`.
    PictureBuilder(int width, int height, const DecodeOptions& options = {});
    explicit operator bool() const { return static_cast<bool>(m_buffer); }

    int width() const { return m_width; }
    int height() const { return m_height; }
    std::size_t bytesPerRow() const { return 4 * static_cast<std::size_t>(m_width); }
    std::uint8_t* row(int y) { return m_buffer.data() + static_cast<std::size_t>(y) * bytesPerRow(); }

    /// Fills every row with one pixel. Fails when it was cancelled.
    Outcome fill(std::array<std::uint8_t, 4> pixel);

    /// Ends the work; fails when it was cancelled. `translucent`: whether alpha bytes were written (otherwise they are
    /// set to 255 here; with it, a picture whose alpha is 255 throughout still becomes `NoneSkipLast`). `iccProfile`:
    /// an RGB or grey profile that the rows are in, empty for sRGB; one that can't be used is ignored.
    Result<UIImage> finish(bool translucent, std::span<const std::uint8_t> iccProfile,
                           UIImageOrientation orientation) &&;
    /// The same for rows whose alpha bytes were written as 255, which saves a walk over the pixels.
    Result<UIImage> finishOpaque(std::span<const std::uint8_t> iccProfile, UIImageOrientation orientation) &&;

private:
    Result<UIImage> finishWith(CGImageAlphaInfo alpha, std::span<const std::uint8_t> iccProfile,
                               UIImageOrientation orientation) &&;

    int m_width;
    int m_height;
    const std::atomic<bool>* m_cancelled;
    PixelBuffer m_buffer;
};

} // namespace lamina
