#pragma once

#include "gpu/kernels/KernelFrame.h"

#include <array>
#include <cstdint>
#include <functional>

namespace lamina::kernels {

// Filters that make each pixel of that pixel alone. Colours are 0 to 1, straight, as stored; results are cut to that
// and rounded to 8 bits. Kernels of values that are no numbers are empty: what comes of those is the driver's affair.

/// What red, green, blue, alpha and one weigh in one channel of the result.
using ColorWeights = std::array<float, 5>;
/// The weights for red, green, blue and alpha.
using ColorMatrix = std::array<ColorWeights, 4>;

/// Changes nothing.
inline constexpr ColorMatrix kSameColors{{{1, 0, 0, 0, 0}, {0, 1, 0, 0, 0}, {0, 0, 1, 0, 0}, {0, 0, 0, 1, 0}}};

/// The same weights for the whole picture.
FilterKernel matrixKernel(const ColorMatrix& matrix);
/// Weights for each row, by the place of its middle from 0 at the picture's top to 1 at its bottom.
FilterKernel matrixKernel(std::function<ColorMatrix(float place)> matrixAt);

/// For each value of a channel what it becomes; alpha stays.
using ChannelTable = std::array<std::uint8_t, 256>;
/// Tables of red, green and blue.
FilterKernel tableKernel(const std::array<ChannelTable, 3>& tables);
/// The table of a formula for values from 0 to 1.
ChannelTable channelTable(const std::function<float(float)>& formula);

/// A tint by luminance, mixed in:
///
///   Y = 0.2125 R + 0.7154 G + 0.0721 B,   tint = Y < 0.5 ? 2 Y c : 1 - 2 (1 - Y) (1 - c)
///   out.rgb = (1 - intensity) in.rgb + intensity tint
struct LuminanceTint {
    std::array<float, 3> color; ///< c
    float intensity;
};
/// Alpha stays.
FilterKernel luminanceTintKernel(const LuminanceTint& tint);

/// Lays the second input over the first by its alpha: out.rgb = mix(first.rgb, second.rgb, second.a * share).
FilterKernel alphaBlendKernel(float share);

} // namespace lamina::kernels
