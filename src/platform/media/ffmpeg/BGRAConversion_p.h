#pragma once

#include "platform/base/CGGeometry.h"

#include <cstddef>
#include <cstdint>

namespace lamina {

/// A plane of bytes.
struct ByteRows {
    std::uint8_t* bytes = nullptr;
    std::ptrdiff_t bytesPerRow = 0;
};

/// Y, Cb and Cr in video range by ITU-R BT.709 of pixels B G R, or R G B, and a byte more. Chroma has half the sides,
/// rounded up, and stands over the left of its two columns, in the middle of its two rows: a mean of three columns and
/// two rows.
void convertBGRATo420(const std::uint8_t* pixels, std::ptrdiff_t bytesPerRow, IntSize size, bool redFirst,
                      const ByteRows (&planes)[3]);

} // namespace lamina
