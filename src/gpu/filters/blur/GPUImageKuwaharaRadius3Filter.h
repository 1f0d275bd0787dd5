#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/blur/PixelStepFilter.h"

namespace lamina {

/// As `GPUImageKuwaharaFilter` with radius 3, and faster: the same formula with squares of n = 16 pixels, 49 reads a
/// pixel in place of 64.
class GPUImageKuwaharaRadius3Filter : public PixelStepFilter {
public:
    static FilterDescription describe();

    GPUImageKuwaharaRadius3Filter();
};

} // namespace lamina
