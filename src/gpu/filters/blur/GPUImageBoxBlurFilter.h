#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/blur/GPUImageGaussianBlurFilter.h"

#include <string>

namespace lamina {

/// Blurs with a box: every pixel of the square around has the same weight.
///
///   out(p) = sum over |i| <= n of in(p + i * step) / (2 n + 1)   downwards, then the same across
///
/// n is `blurRadiusInPixels`: 4 at first, whole pixels, at most 62. All else is as in `GPUImageGaussianBlurFilter`.
class GPUImageBoxBlurFilter : public GPUImageGaussianBlurFilter {
public:
    static FilterDescription describe();

    GPUImageBoxBlurFilter();

    // The texts of shaders, as those of the base with equal weights; `sigma` plays no part.

    /// Hands out the place of each neighbour.
    static std::string vertexShaderForStandardBlurOfRadius(unsigned blurRadius, double sigma);
    /// Reads each neighbour.
    static std::string fragmentShaderForStandardBlurOfRadius(unsigned blurRadius, double sigma);
    /// Hands out the places between pairs of neighbours.
    static std::string vertexShaderForOptimizedBlurOfRadius(unsigned blurRadius, double sigma);
    /// Reads two neighbours at once.
    static std::string fragmentShaderForOptimizedBlurOfRadius(unsigned blurRadius, double sigma);

protected:
    BlurWeights weightsForRadius(double pixels) const override;
};

} // namespace lamina
