#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/blend/MixtureBlendFilter.h"

namespace lamina {

/// Fades from the base (slot 0) to the overlay (slot 1).
///
///   out = (1 - mix) base + mix overlay,   on all four channels
///
/// Colours are straight, as stored: where alphas differ, the colour of a clear pixel shows in the mixture. `mix` runs
/// from 0, the base, to 1, the overlay; default 0.5.
class GPUImageDissolveBlendFilter : public MixtureBlendFilter {
public:
    GPUImageDissolveBlendFilter();
    static FilterDescription describe();
};

} // namespace lamina
