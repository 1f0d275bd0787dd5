#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/color/LuminanceTintFilter.h"

namespace lamina {

/// A look far past its tint: as `GpuImageCustomFilter`, with the first two numbers of `color` exchanged, but by default
/// with intensity 5, which goes on from the picture through the tint and beyond. Default colour (0.23, 0.35, 0.1),
/// which tints with (0.35, 0.23, 0.1).
class GpuImageCustomFilter1 : public LuminanceTintFilter {
public:
    GpuImageCustomFilter1();
    static FilterDescription describe();
};

} // namespace lamina
