#pragma once

#include "gpu/filters/effect/GPUImagePixellateFilter.h"

namespace lamina {

/// Coloured dots on black: in each large pixel of `GPUImagePixellateFilter` a disc of its colour.
///
///   out.rgb = in(m).rgb where |m - c| < w / 2 * dotScaling, else 0,   out.a = in(m).a
///
/// with m the middle of the cell, w its side, and the distance in widths of the picture.
class GPUImagePolkaDotFilter : public GPUImagePixellateFilter {
public:
    GPUImagePolkaDotFilter();
    static FilterDescription describe();

    /// A dot's diameter over the side of its cell: 0.9 at first. From 1.42 on the dots fill everything.
    float dotScaling() const { return m_dotScaling; }
    void setDotScaling(float share);

private:
    GLint m_dotScalingUniform;
    float m_dotScaling = 0;
};

} // namespace lamina
