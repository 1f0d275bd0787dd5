#pragma once

#include "gpu/filters/effect/GPUImagePixellateFilter.h"

namespace lamina {

/// Black dots on white, as newspapers print: in each large pixel of `GPUImagePixellateFilter` (here of 0.01 at first)
/// a disc, the larger the darker it is.
///
///   out.rgb = 0 where |m - c| < w / 2 (1 - Y), else 1,   out.a = in(m).a
///
/// with m the middle of the cell, w its side, the distance in widths of the picture, and Y the luminance of in(m) by
/// Rec. ITU-R BT.709, 0.2125 red + 0.7154 green + 0.0721 blue, on straight values as stored.
class GPUImageHalftoneFilter : public GPUImagePixellateFilter {
public:
    GPUImageHalftoneFilter();
    static FilterDescription describe();
};

} // namespace lamina
