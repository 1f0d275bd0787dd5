#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/color/ColorValueFilter.h"

namespace lamina {

/// Raises every channel to a power: the middle moves, black and white stay.
///
///   out.rgb = in.rgb^gamma,   out.a = in.a
///
/// On straight values as stored. Default 1, the picture as it is. At 0 all is white but what is 0, as it is for ever
/// smaller powers; below 0 all is white.
class GPUImageGammaFilter : public ColorValueFilter {
public:
    GPUImageGammaFilter();
    static FilterDescription describe();

    /// The exponent.
    float gamma() const { return value(); }
    void setGamma(float gamma) { setValue(gamma); }
};

} // namespace lamina
