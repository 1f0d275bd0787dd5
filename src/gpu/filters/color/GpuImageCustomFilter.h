#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/color/LuminanceTintFilter.h"

namespace lamina {

/// A look: a picture in the shades of one colour, as the base tells. The first two numbers of `color` change places:
/// the tint is (green, red, blue). The look was chosen with its numbers in this order, and stays as people know it.
/// Defaults: intensity 1, colour (0.1, 0.35, 0.23), which tints with (0.35, 0.1, 0.23).
class GpuImageCustomFilter : public LuminanceTintFilter {
public:
    GpuImageCustomFilter();
    static FilterDescription describe();
};

} // namespace lamina
