#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/media/CVPixelBuffer.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace lamina {

/// How cameras lay the pixels that we read; those that are cheaper to take come first. Of four letters, as drivers name
/// them; bytes in the order in which they lie in memory.
enum class RawEncoding : std::uint8_t {
    NV12, ///< a plane of Y, then one of Cb Cr at half the sides
    I420, ///< a plane of Y, then ones of Cb and of Cr at half the sides
    YUY2, ///< Y Cb Y Cr: two pixels
    UYVY, ///< Cb Y Cr Y: two pixels
    BGRx, ///< and a byte that nobody looks at
    BGRA, ///< what its alpha says is not looked at: cameras see no clear pixels
    RGBx,
    RGBA,
    BGR,
    RGB,
    GRAY8,
    MJPG, ///< each frame a JPEG file
};

/// Their names, in their order.
inline constexpr std::array<std::string_view, 12> kRawEncodingNames{"NV12", "I420", "YUY2", "UYVY", "BGRx",  "BGRA",
                                                                    "RGBx", "RGBA", "BGR",  "RGB",  "GRAY8", "MJPG"};

/// The largest frames that are taken: what a camera says of itself is not to be believed.
inline constexpr int kLargestFrameSide = 16384;
inline constexpr std::int64_t kMostFramePixels = 50'000'000;

/// Whether frames of such a size are taken.
constexpr bool isFrameSize(IntSize size)
{
    return size.width > 0 && size.height > 0 && size.width <= kLargestFrameSide && size.height <= kLargestFrameSide &&
           std::int64_t{size.width} * size.height <= kMostFramePixels;
}

/// A frame as a camera has laid it into memory that stays the camera's. Nothing of it is to be believed.
struct RawFrame {
    /// What a plane, or all of a file, takes up.
    struct Plane {
        const std::uint8_t* bytes = nullptr;
        std::size_t size = 0;        ///< bytes that are there
        std::size_t bytesPerRow = 0; ///< 0: without padding; not of MJPG
    };

    RawEncoding encoding = RawEncoding::NV12;
    IntSize size;                           ///< of MJPG what was agreed on; the file may say another
    std::array<Plane, 3> planes = {};       ///< those that the encoding has
    YCbCrMatrix matrix = YCbCrMatrix::None; ///< None: 601, as cameras that say nothing mean it
    bool isFullRange = false;               ///< of those with Y
};

} // namespace lamina
