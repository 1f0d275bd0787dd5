#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/edge/MorphologyFilter.h"

namespace lamina {

/// Lets dark areas grow: every pixel takes the smallest red value of the square around it.
///
///   v = min over |i| <= radius, |j| <= radius of in.r(p + (i, j)),   out = (v, v, v, 1)
///
/// `in` straight, as stored; done downwards, then across. Green, blue and alpha are not looked at, so that a photo
/// comes out grey and opaque. Beyond the border the outermost pixels go on.
class GPUImageErosionFilter : public MorphologyFilter {
public:
    static FilterDescription describe();

    /// `radius` in pixels: 0 counts as 1, more than 4 as 4.
    explicit GPUImageErosionFilter(unsigned radius = 1);
};

} // namespace lamina
