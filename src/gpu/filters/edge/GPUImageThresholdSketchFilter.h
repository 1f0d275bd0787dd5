#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/edge/GPUImageThresholdEdgeDetectionFilter.h"

namespace lamina {

/// A drawing in ink: black edges on white, where `GPUImageThresholdEdgeDetectionFilter` has white on black.
///
///   out.rgb = edgeStrength * sqrt(gx^2 + gy^2) >= threshold ? 0 : 1,   out.a = in.a
class GPUImageThresholdSketchFilter : public GPUImageThresholdEdgeDetectionFilter {
public:
    static FilterDescription describe();

    GPUImageThresholdSketchFilter();
};

} // namespace lamina
