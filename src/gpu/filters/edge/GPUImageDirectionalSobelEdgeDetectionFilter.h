#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImage3x3TextureSamplingFilter.h"

namespace lamina {

/// How steep the red channel is, and which way it rises: what edges are thinned by.
///
///   out = (m, (gx / m + 1) / 2, (gy / m + 1) / 2, 1),   m = sqrt(gx^2 + gy^2)
///
/// with the gradient (gx, gy) of `gradientShader`, by Sobel's operator, x to the right and y downwards in the texture.
/// Where nothing rises, green and blue are 0.5. m is cut to 1, the direction is that of the whole.
class GPUImageDirectionalSobelEdgeDetectionFilter : public GPUImage3x3TextureSamplingFilter {
public:
    static FilterDescription describe();

    GPUImageDirectionalSobelEdgeDetectionFilter();
};

} // namespace lamina
