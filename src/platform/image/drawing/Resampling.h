#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/image/pixels/CGImage.h"

namespace lamina {

/// Resizes to exactly `size` pixels, with edges on the edges of the source. Each axis by itself: reducing by 2 or more
/// takes the mean of the area that a pixel covers; reducing by less the Lanczos kernel of three lobes, widened to the
/// target's pixels; enlarging the cubic convolution kernel of Keys with a = -1/2 ("Cubic convolution interpolation for
/// digital image processing", IEEE Trans. ASSP 29, 1981). Samples beyond the edge repeat the edge.
///
/// Colours are weighted by alpha; the result has the source's colour space, eight bits a component, and is
/// premultiplied when the source has alpha (skip-last otherwise). The values do not depend on the number of threads or
/// the processor. Empty when the source is, a side is not positive, or memory is short.
CGImage resampled(const CGImage& source, IntSize size);

/// The same of a picture of `whole` pixels of which `source` is what was left when it was reduced while it was read:
/// each axis by the kernel that the whole picture would get, so that the result is nearly the same.
CGImage resampled(const CGImage& source, IntSize size, IntSize whole);

} // namespace lamina
