#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/blend/MixtureBlendFilter.h"
#include "gpu/kernels/KernelFrame.h"

namespace lamina {

/// Lays the overlay (slot 1) over the base (slot 0) by its alpha.
///
///   out.rgb = (1 - t) base.rgb + t overlay.rgb,   t = overlay.a mix,   out.a = base.a
///
/// Colours are straight, as stored. `mix` runs from 0, the base alone, to 1; default 0.5. The base's alpha has no say
/// in the colour, and stays.
class GPUImageAlphaBlendFilter : public MixtureBlendFilter {
public:
    GPUImageAlphaBlendFilter();
    static FilterDescription describe();

protected:
    FilterKernel kernel() const override;
};

} // namespace lamina
