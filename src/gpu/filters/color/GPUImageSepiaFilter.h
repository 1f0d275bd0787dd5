#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/color/GPUImageColorMatrixFilter.h"

namespace lamina {

/// Brown tones, as of an old print: a colour matrix whose rows for red, green and blue are the luma of the picture in
/// falling strength.
///
///   red = 1.2 Y,   green = Y,   blue = 0.8 Y,   Y = 0.299 red + 0.587 green + 0.114 blue,   alpha stays
///
/// Luma weights: Rec. ITU-R BT.601, on stored values. Intensity 1 is the full tone, 0 the picture itself.
class GPUImageSepiaFilter : public GPUImageColorMatrixFilter {
public:
    GPUImageSepiaFilter();
    static FilterDescription describe();
};

} // namespace lamina
