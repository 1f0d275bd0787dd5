#pragma once

#include <cstddef>
#include <cstdint>

namespace lamina::filters {

enum class Convolution { Emboss, Sharpen, Unsharpen, GaussianBlur, EdgeDetection };

/// Pixels from the middle of a kernel to its side: 1 or 2. A kernel takes 2 · radius + 1 rows.
constexpr int radiusOf(Convolution kind)
{
    return kind == Convolution::GaussianBlur ? 2 : 1;
}

constexpr int kMostKernelRows = 5;

/// What a convolution does to a row, apart from its kernel.
struct ConvolutionRow {
    const std::uint8_t* const* rows; ///< 2 · radius + 1 rows of A R G B pixels, from the top
    std::size_t pixels;              ///< in a row, 2 · radius + 1 or more
    int bias;                        ///< added after the division; ±4096, beyond which nothing changes any more
    std::uint8_t filled;             ///< bits set in every first byte
};

/// The pixels of the middle row whose kernel lies within the picture: all but `radius` at either end, which `out`
/// keeps as it is. `out` is a whole row and none of the rows read. EdgeDetection keeps the first byte and has no use
/// for bias and `filled`.
void convolveRow(Convolution kind, const ConvolutionRow& row, std::uint8_t* out);

} // namespace lamina::filters
