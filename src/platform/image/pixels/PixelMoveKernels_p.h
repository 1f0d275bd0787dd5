#pragma once

#include "platform/base/CGGeometry.h"

#include <cstddef>
#include <cstdint>

namespace lamina::kernels {

// Pixels of four bytes moved, on lanes chosen at run time. `filled`: bits that are set in every pixel. Rows don't
// overlap.

void copyPixels(const std::uint8_t* in, std::size_t pixels, std::uint32_t filled, std::uint8_t* out);

/// The last pixel first.
void mirrorPixels(const std::uint8_t* in, std::size_t pixels, std::uint32_t filled, std::uint8_t* out);

/// Rows of one picture and of another; a negative step goes through them from the last to the first.
struct MovedRows {
    const std::uint8_t* source;
    std::ptrdiff_t sourceStep;
    IntSize size; ///< of the source
    std::uint8_t* target;
    std::ptrdiff_t targetStep;
};

/// Source columns [begin, end), at most 32, become rows of the target, from row `begin` on.
void transposeColumns(const MovedRows& rows, int begin, int end, std::uint32_t filled);

} // namespace lamina::kernels
