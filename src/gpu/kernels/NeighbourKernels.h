#pragma once

#include "gpu/kernels/KernelFrame.h"

#include <array>

namespace lamina::kernels {

// Filters that make each pixel of it and its neighbours. Beyond the border the outermost pixels go on; alpha stays
// unless said otherwise.

/// Weights of the rows above, at and below the pixel, each from left to right.
using NeighbourWeights = std::array<float, 9>;
/// What they sum to. Empty for what are no numbers.
FilterKernel convolutionKernel(const NeighbourWeights& weights);

/// Colours rounded to `levels` steps from black to white, and black where the gradient of red by Sobel's operator is at
/// least `threshold` long. Empty for what are no numbers, and without levels.
FilterKernel posterizedEdgesKernel(float threshold, float levels);

/// What of the values around a pixel is taken.
enum class Extreme { Least, Greatest };
/// Of what they are.
enum class ExtremeOf {
    Red,         ///< grey by red alone, opaque
    EachChannel, ///< of red, green, blue and alpha
};
/// The extreme of all pixels within `radius` of it in both directions.
FilterKernel extremeKernel(Extreme extreme, ExtremeOf channels, int radius);

} // namespace lamina::kernels
