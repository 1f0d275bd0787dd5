#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/edge/MorphologyPair.h"

namespace lamina {

/// Fills dark specks and gaps narrower than the square of the radius; what is wider keeps its shape.
///
///   out = erosion(dilation(in))     of one radius: `GPUImageRGBDilationFilter`, then `GPUImageRGBErosionFilter`
///
/// Each channel by itself, alpha too.
class GPUImageRGBClosingFilter : public MorphologyPair {
public:
    static FilterDescription describe();

    /// `radius` in pixels: 0 counts as 1, more than 4 as 4.
    explicit GPUImageRGBClosingFilter(unsigned radius = 1);
};

} // namespace lamina
