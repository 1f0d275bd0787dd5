#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImage3x3TextureSamplingFilter.h"

namespace lamina {

/// Packs the reds of four neighbours into one pixel, so that what comes after reads them at once.
///
///   out = (red of the left, of the top, of the right, of the bottom neighbour)
///
/// The fourth is alpha: shown as a picture, it is transparent where that neighbour is dark.
class GPUImageColorPackingFilter : public GPUImage3x3TextureSamplingFilter {
public:
    static FilterDescription describe();

    GPUImageColorPackingFilter();
};

} // namespace lamina
