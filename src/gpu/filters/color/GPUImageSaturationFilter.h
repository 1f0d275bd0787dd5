#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/color/ColorValueFilter.h"

namespace lamina {

/// Moves every colour away from its grey, or towards it.
///
///   out.rgb = Y + saturation (in.rgb - Y),   Y = 0.2125 red + 0.7154 green + 0.0721 blue,   out.a = in.a
///
/// Luma weights: Rec. ITU-R BT.709, on straight values as stored; the result is cut to 0 to 1. Default 1, the picture
/// as it is.
class GPUImageSaturationFilter : public ColorValueFilter {
public:
    GPUImageSaturationFilter();
    static FilterDescription describe();

    /// Factor of the distance from grey.
    float saturation() const { return value(); }
    void setSaturation(float saturation) { setValue(saturation); }
};

} // namespace lamina
