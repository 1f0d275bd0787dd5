#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageTwoInputFilter.h"
#include "gpu/filters/color/ChromaKeying.h"

namespace lamina {

/// Shows the overlay (slot 1) where the base (slot 0) has a backdrop's colour, by default green.
///
///   out = share base + (1 - share) overlay,   on all four channels
///
/// with the share that is told at `kChromaKeyFunctions`. Colours are straight, as stored.
class GPUImageChromaKeyBlendFilter : public ChromaKeying<GPUImageTwoInputFilter> {
public:
    GPUImageChromaKeyBlendFilter();
    static FilterDescription describe();
};

} // namespace lamina
