#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/edge/PosterizedEdgesFilter.h"

namespace lamina {

/// A cartoon: few shades, and black lines wherever red changes by more than a little (`threshold` 0.2 at first).
class GPUImageToonFilter : public PosterizedEdgesFilter {
public:
    static FilterDescription describe();

    GPUImageToonFilter();
};

} // namespace lamina
