#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/blur/GPUImageGaussianBlurFilter.h"

#include <string>

namespace lamina {

/// Blurs the red channel with a Gaussian bell: what a grey picture is blurred with, at a quarter of the sums.
///
///   out = (s, s, s, 1),   s = sum over |i| <= n of w(|i|) * red(p + i * step)   downwards, then the same across
///
/// Weights, radius and border are those of `GPUImageGaussianBlurFilter`. Below a radius of 1 the picture passes through
/// as it is, colours and all.
class GPUImageSingleComponentGaussianBlurFilter : public GPUImageGaussianBlurFilter {
public:
    static FilterDescription describe();

    GPUImageSingleComponentGaussianBlurFilter();

    // The texts of fragment shaders, as those of the base with a single number as the sum.

    /// Reads each neighbour.
    static std::string fragmentShaderForStandardBlurOfRadius(unsigned blurRadius, double sigma);
    /// Reads two neighbours at once.
    static std::string fragmentShaderForOptimizedBlurOfRadius(unsigned blurRadius, double sigma);
};

} // namespace lamina
