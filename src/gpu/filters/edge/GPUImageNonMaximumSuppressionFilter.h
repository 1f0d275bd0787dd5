#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImage3x3TextureSamplingFilter.h"

namespace lamina {

/// Keeps the peaks of the red channel and blackens what is beside them.
///
///   out.rgb = in.rgb where in.r is above that of the four neighbours before it, left, top left, top and top right,
///             and not below that of the four behind it; else 0,      out.a = in.a
///
/// so that of equal neighbours one stays. What lies beyond the border is below everything; values less than half a step
/// of 8 bits apart are equal.
class GPUImageNonMaximumSuppressionFilter : public GPUImage3x3TextureSamplingFilter {
public:
    static FilterDescription describe();

    GPUImageNonMaximumSuppressionFilter();
};

} // namespace lamina
