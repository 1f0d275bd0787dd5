#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/color/ColorValueFilter.h"

namespace lamina {

/// Reduces the range of luminance: dark parts become lighter and bright ones darker, each with its colour.
///
///   out.rgb = in.rgb + (0.5 - Y) rangeReductionFactor,   Y = 0.2125 red + 0.7154 green + 0.0721 blue,   out.a = in.a
///
/// Luma weights: Rec. ITU-R BT.709, on straight values as stored; the result is cut to 0 to 1. Default 0.6; 0 is the
/// picture as it is.
class GPUImageLuminanceRangeFilter : public ColorValueFilter {
public:
    GPUImageLuminanceRangeFilter();
    static FilterDescription describe();

    /// Share of the distance from middle grey that is taken away.
    float rangeReductionFactor() const { return value(); }
    void setRangeReductionFactor(float rangeReductionFactor) { setValue(rangeReductionFactor); }
};

} // namespace lamina
