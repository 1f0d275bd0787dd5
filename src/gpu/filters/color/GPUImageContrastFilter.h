#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/color/ColorValueFilter.h"

namespace lamina {

/// Moves every channel away from the middle, or towards it.
///
///   out.rgb = (in.rgb - 0.5) contrast + 0.5,   out.a = in.a
///
/// On straight values as stored; the result is cut to 0 to 1. Default 1, the picture as it is; 0 is an even grey, below
/// 0 colours are turned round too.
class GPUImageContrastFilter : public ColorValueFilter {
public:
    GPUImageContrastFilter();
    static FilterDescription describe();

    /// Factor of the distance from the middle.
    float contrast() const { return value(); }
    void setContrast(float contrast) { setValue(contrast); }
};

} // namespace lamina
