#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/color/HueRotationFilter.h"

namespace lamina {

/// Turns the hue of every colour by an angle: `setHue` takes degrees, default 90, and 450 is the same as 90.
///
///   I = 0.595716 red - 0.274453 green - 0.321263 blue,   red = Y + 0.9563 I + 0.6210 Q
///
/// The rest is told at the base. Hue 0 gives the picture back but for the rounding of the matrices.
class GPUImageHueFilter : public HueRotationFilter {
public:
    GPUImageHueFilter();
    static FilterDescription describe();
};

} // namespace lamina
