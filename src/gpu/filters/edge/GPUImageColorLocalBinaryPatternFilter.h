#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImage3x3TextureSamplingFilter.h"

namespace lamina {

/// The textures of red, green and blue: of each what `GPUImageLocalBinaryPatternFilter` makes of red.
class GPUImageColorLocalBinaryPatternFilter : public GPUImage3x3TextureSamplingFilter {
public:
    static FilterDescription describe();

    GPUImageColorLocalBinaryPatternFilter();
};

} // namespace lamina
