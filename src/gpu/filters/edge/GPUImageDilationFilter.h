#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/edge/MorphologyFilter.h"

namespace lamina {

/// Lets bright areas grow: every pixel takes the largest red value of the square around it.
///
///   v = max over |i| <= radius, |j| <= radius of in.r(p + (i, j)),   out = (v, v, v, 1)
///
/// `in` straight, as stored; done downwards, then across. Green, blue and alpha are not looked at, so that a photo
/// comes out grey and opaque. Beyond the border the outermost pixels go on.
class GPUImageDilationFilter : public MorphologyFilter {
public:
    static FilterDescription describe();

    /// `radius` in pixels: 0 counts as 1, more than 4 as 4.
    explicit GPUImageDilationFilter(unsigned radius = 1);
};

} // namespace lamina
