#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/color/ColorValueFilter.h"

namespace lamina {

/// Adds the same amount to every channel.
///
///   out.rgb = in.rgb + brightness,   out.a = in.a
///
/// On straight values as stored; the result is cut to 0 to 1. Default 0, the picture as it is.
class GPUImageBrightnessFilter : public ColorValueFilter {
public:
    GPUImageBrightnessFilter();
    static FilterDescription describe();

    /// From -1, all black, to 1, all white.
    float brightness() const { return value(); }
    void setBrightness(float brightness) { setValue(brightness); }
};

} // namespace lamina
