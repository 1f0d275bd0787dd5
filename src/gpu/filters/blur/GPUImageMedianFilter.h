#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImage3x3TextureSamplingFilter.h"

namespace lamina {

/// Takes specks away and leaves edges: each channel becomes the middle one, by size, of the pixel's and its eight
/// neighbours'.
///
///   out = the fifth of nine, on each of the four channels by itself
///
/// on straight values as stored. Beyond the border the outermost pixels go on.
class GPUImageMedianFilter : public GPUImage3x3TextureSamplingFilter {
public:
    static FilterDescription describe();

    GPUImageMedianFilter();
};

} // namespace lamina
