#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/edge/MorphologyPair.h"

namespace lamina {

/// Removes bright specks and lines narrower than the square of the radius; what is wider keeps its shape.
///
///   out = dilation(erosion(in))     of one radius: `GPUImageRGBErosionFilter`, then `GPUImageRGBDilationFilter`
///
/// Each channel by itself, alpha too.
class GPUImageRGBOpeningFilter : public MorphologyPair {
public:
    static FilterDescription describe();

    /// `radius` in pixels: 0 counts as 1, more than 4 as 4.
    explicit GPUImageRGBOpeningFilter(unsigned radius = 1);
};

} // namespace lamina
