#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace lamina::filters {

// Arithmetic on the colours of a row on its way to a surface: R G B A bytes come in, A R G B bytes go out, in one
// pass, by the widest lanes of the processor. In and out may be the same row. Everything is single precision without
// fused steps, so that all processors agree with the plain loop. Alpha stays, but for bits that are set in all of
// them.

struct ColorRow {
    const std::uint8_t* rgba;
    std::uint8_t filledAlpha;
    std::uint8_t* argb;
    std::size_t pixels;
};

/// out = (in + before) · factor + after, clipped to 0 to 255, the fraction cut off. All three finite, factor within
/// ±10^6.
struct LinearMap {
    float before = 0;
    float factor = 1;
    float after = 0;
};

void mapColors(const LinearMap& map, const ColorRow& row);

/// Row by row, what R, G and B give to red, green and blue; not negative.
using ColorMatrix = std::array<std::array<float, 3>, 3>;

/// Each colour is a sum of products, added from the left, then cut as above.
void mixColors(const ColorMatrix& matrix, const ColorRow& row);

} // namespace lamina::filters
