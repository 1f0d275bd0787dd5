#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/color/ColorValueFilter.h"

namespace lamina {

/// Multiplies every channel, as more or less light would.
///
///   out.rgb = in.rgb 2^exposure,   out.a = in.a
///
/// On straight values as stored, which are not linear in light: a step is somewhat more than a stop of a camera. The
/// result is cut to 0 to 1. Default 0, the picture as it is. Beyond 10 either way nothing changes any more: all but
/// black is white, or all is black.
class GPUImageExposureFilter : public ColorValueFilter {
public:
    GPUImageExposureFilter();
    static FilterDescription describe();

    /// In doublings.
    float exposure() const { return value(); }
    void setExposure(float exposure) { setValue(exposure); }
};

} // namespace lamina
