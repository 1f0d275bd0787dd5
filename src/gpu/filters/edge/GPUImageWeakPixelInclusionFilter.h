#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImage3x3TextureSamplingFilter.h"

namespace lamina {

/// Makes faint pixels of lines white where the line goes on around them, and drops what stands alone.
///
///   out.rgb = sum of the nine reds in and around the pixel >= 1.5 and in.r >= 0.01 ? 1 : 0,   out.a = in.a
class GPUImageWeakPixelInclusionFilter : public GPUImage3x3TextureSamplingFilter {
public:
    static FilterDescription describe();

    GPUImageWeakPixelInclusionFilter();
};

} // namespace lamina
