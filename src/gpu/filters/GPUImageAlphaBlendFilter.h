#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageTwoInputFilter.h"

namespace lamina {

/// Lays the overlay (slot 1) over the base (slot 0) by its alpha.
///
///   out.rgb = (1 - t) base.rgb + t overlay.rgb,   t = overlay.a mix,   out.a = base.a
///
/// Colours are straight, as stored. `mix` runs from 0, the base alone, to 1; default 0.5. The base's alpha has no say in the
/// colour, and stays.
class GPUImageAlphaBlendFilter : public GPUImageTwoInputFilter {
public:
    GPUImageAlphaBlendFilter();
    static FilterDescription describe();

    float mix() const { return m_mix; }
    void setMix(float mix);

private:
    GLint m_mixUniform;
    float m_mix = 0;
};

} // namespace lamina
