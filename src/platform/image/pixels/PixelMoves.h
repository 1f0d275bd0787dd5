#pragma once

#include "platform/image/pixels/CGImage.h"

#include <atomic>
#include <cstddef>
#include <cstdint>

namespace lamina {

/// Whole pixels moved to other places: mirrored first, then turned counter-clockwise by quarters.
struct PixelMove {
    int quarters = 0; ///< any number
    bool mirrorX = false;
    bool mirrorY = false;

    bool swapsSides() const { return quarters % 2 != 0; }
};

/// True for pixels that can be moved: of 1, 2, 3, 4, 6, 8, 12 or 16 whole bytes.
bool canMovePixels(int bitsPerPixel);

/// Moves the pixels of `image`, for which `canMovePixels` is true, into rows `targetRow` bytes apart that hold its
/// size, with the sides swapped where the move does so. In pixels of four bytes the bits of `filled` (four bytes as
/// they lie in memory) are set on the way. The rows are split over the worker pool; once `cancelled` is set, those that
/// nobody has begun are left out.
void movePixels(const CGImage& image, const PixelMove& move, std::uint32_t filled, std::uint8_t* target,
                std::size_t targetRow, const std::atomic<bool>* cancelled = nullptr);

} // namespace lamina
