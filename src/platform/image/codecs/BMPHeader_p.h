#pragma once

#include "platform/base/Result.h"
#include "platform/image/codecs/ByteSource_p.h"

#include <array>
#include <cstdint>
#include <vector>

namespace lamina {

/// What stands before the pixels of a BMP file.
struct BMPHeader {
    enum class Packing { Plain, RunLength8, RunLength4 };

    int width = 0;
    int height = 0;
    bool topDown = false;
    int bitsPerPixel = 0; ///< 1, 2, 4, 8 (all with palette), 16, 24 or 32
    Packing packing = Packing::Plain;
    std::uint64_t pixelOffset = 0;

    /// Red, green, blue and alpha bits of pixels of 16 and 32 bits; zero: no such component.
    std::array<std::uint32_t, 4> masks{};
    /// R, G, B of each index; those that the file doesn't give are black.
    std::array<std::array<std::uint8_t, 3>, 256> palette{};
    /// Where an embedded profile stands; size 0 when there is none.
    std::uint64_t profileOffset = 0;
    std::uint32_t profileSize = 0;

    /// Bytes from one stored row to the next, a multiple of four.
    std::uint64_t storedBytesPerRow() const
    {
        return (static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(bitsPerPixel) + 31) / 32 * 4;
    }
    /// Bytes of a row without its padding, which some writers leave out behind the last row.
    std::uint64_t usedBytesPerRow() const
    {
        return (static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(bitsPerPixel) + 7) / 8;
    }
};

/// Whether the length of the second header is one that exists.
bool isBMPHeaderSize(std::uint32_t size);

/// The header, or why the file can't be read. All kinds from the one of OS/2 with 12 bytes to version 5.
Result<BMPHeader> readBMPHeader(ByteSource& source);

} // namespace lamina
