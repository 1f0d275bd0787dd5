#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImage3x3TextureSamplingFilter.h"

namespace lamina {

/// The texture of the red channel: a byte that tells which neighbours are not below the pixel.
///
///   out.rgb = sum of the bits whose neighbour >= in.r, over 255,   out.a = 1
///
///     8   4   2
///    16   .   1       the bit of each neighbour: from the right one counter-clockwise
///    32  64 128
///
/// Even areas are white. Values less than half a step of 8 bits apart are equal.
class GPUImageLocalBinaryPatternFilter : public GPUImage3x3TextureSamplingFilter {
public:
    static FilterDescription describe();

    GPUImageLocalBinaryPatternFilter();
};

} // namespace lamina
