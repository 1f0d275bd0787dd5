#pragma once

#include "gpu/filters/effect/CenteredFilter.h"

namespace lamina {

/// A wide-angle look: the middle is drawn out over most of the picture, and the borders stay.
///
///   out(c) = in(c'),   c' = center + sign(n) m / 2,   n = 2 (c - center),
///   m = 0.5 |n| + 0.5 smoothstep(0.25, 0.5, |n|) |n|      across and downwards each by itself
///
/// On all four channels, between pixels bilinear. Nearer to the centre than an eighth of the side the picture is twice
/// as large; from a quarter on it stays as it is.
class GPUImageStretchDistortionFilter : public CenteredFilter {
public:
    GPUImageStretchDistortionFilter();
    static FilterDescription describe();
};

} // namespace lamina
