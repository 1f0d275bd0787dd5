#pragma once

#include "gpu/filters/effect/RadialDistortionFilter.h"

namespace lamina {

/// Swells what lies in a circle (`radius` 0.25 at first), as a magnifying glass does:
///
///   p = (1 - (radius - d) / radius * scale)^2
///
/// A `scale` above 0 magnifies, below 0 it shrinks.
class GPUImageBulgeDistortionFilter : public RadialDistortionFilter {
public:
    GPUImageBulgeDistortionFilter();
    static FilterDescription describe();
};

} // namespace lamina
