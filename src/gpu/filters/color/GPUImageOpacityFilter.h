#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/color/ColorValueFilter.h"

namespace lamina {

/// Multiplies the alpha; the colours, which are straight, stay.
///
///   out.rgb = in.rgb,   out.a = opacity in.a
///
/// Default 1, the picture as it is. The result is cut to 0 to 1.
class GPUImageOpacityFilter : public ColorValueFilter {
public:
    GPUImageOpacityFilter();
    static FilterDescription describe();

    /// Factor of the alpha.
    float opacity() const { return value(); }
    void setOpacity(float opacity) { setValue(opacity); }
};

} // namespace lamina
