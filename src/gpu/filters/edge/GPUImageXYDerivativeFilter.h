#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/edge/GPUImageSobelEdgeDetectionFilter.h"

namespace lamina {

/// The products of a picture's derivatives, from which corners are found once their surroundings are summed.
///
///   (dx, dy) = edgeStrength * (gx, gy)
///   out = (dx^2, dy^2, (dx dy + 1) / 2, 1)
///
/// with the gradient of `GPUImageSobelEdgeDetectionFilter`. Blue keeps both signs: 0.5 is nought. Cut to 0..1, so that
/// edges of more than a quarter of the way from black to white count alike.
class GPUImageXYDerivativeFilter : public GPUImageSobelEdgeDetectionFilter {
public:
    static FilterDescription describe();

    GPUImageXYDerivativeFilter();
};

} // namespace lamina
