#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/edge/GPUImageSobelEdgeDetectionFilter.h"

namespace lamina {

/// A drawing in pencil: dark edges on white, 1 less what `GPUImageSobelEdgeDetectionFilter` shows.
///
///   out.rgb = 1 - edgeStrength * sqrt(gx^2 + gy^2),   out.a = in.a
class GPUImageSketchFilter : public GPUImageSobelEdgeDetectionFilter {
public:
    static FilterDescription describe();

    GPUImageSketchFilter();
};

} // namespace lamina
