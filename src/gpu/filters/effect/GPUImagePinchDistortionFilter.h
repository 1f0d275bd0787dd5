#pragma once

#include "gpu/filters/effect/RadialDistortionFilter.h"

namespace lamina {

/// Draws what lies in a circle (`radius` 1 at first) together in its middle:
///
///   p = 1 + (0.5 - d) / 0.5 * scale
///
/// A `scale` above 0 pinches nearer to the centre than half a width and swells beyond, below 0 the other way round.
/// Where the radius is not 0.5 the picture breaks at the circle.
class GPUImagePinchDistortionFilter : public RadialDistortionFilter {
public:
    GPUImagePinchDistortionFilter();
    static FilterDescription describe();
};

} // namespace lamina
