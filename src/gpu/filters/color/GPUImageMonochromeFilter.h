#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/color/LuminanceTintFilter.h"

namespace lamina {

/// A picture in the shades of one colour; see the base. Defaults: intensity 1, colour (0.6, 0.45, 0.3), a brown.
class GPUImageMonochromeFilter : public LuminanceTintFilter {
public:
    GPUImageMonochromeFilter();
    static FilterDescription describe();
};

} // namespace lamina
