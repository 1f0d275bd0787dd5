#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilter.h"

namespace lamina {

/// The four colours of an early home computer's screen, in its large pixels.
///
///   out.rgb = the nearest of black, white, cyan (1/3, 1, 1) and magenta (1, 1/3, 1) to in(c').rgb,
///   out.a = in(c').a,   c' = c - mod(c, (1/200, 1/320))
///
/// Nearest by the distance in red, green and blue, straight, as stored; of equally near ones the first named. Pixels
/// of the grid are read at their top left corners, bilinear.
class GPUImageCGAColorspaceFilter : public GPUImageFilter {
public:
    GPUImageCGAColorspaceFilter();
    static FilterDescription describe();
};

} // namespace lamina
