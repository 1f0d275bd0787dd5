#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/edge/MorphologyFilter.h"

namespace lamina {

/// Lets dark areas grow in colour: every channel, alpha too, takes its smallest value in the square around the pixel.
///
///   out.c = min over |i| <= radius, |j| <= radius of in.c(p + (i, j)),   c: red, green, blue, alpha
///
/// `in` straight, as stored; done downwards, then across. The channels may come from different neighbours, so that
/// colours arise that the picture doesn't have. Beyond the border the outermost pixels go on.
class GPUImageRGBErosionFilter : public MorphologyFilter {
public:
    static FilterDescription describe();

    /// `radius` in pixels: 0 counts as 1, more than 4 as 4.
    explicit GPUImageRGBErosionFilter(unsigned radius = 1);
};

} // namespace lamina
