#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/edge/PosterizedEdgesFilter.h"

namespace lamina {

/// A poster: few shades, and black only along hard edges (`threshold` 1 at first).
class GpuImageCustomFilter3 : public PosterizedEdgesFilter {
public:
    static FilterDescription describe();

    GpuImageCustomFilter3();
};

} // namespace lamina
