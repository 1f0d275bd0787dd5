#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageTwoPassTextureSamplingFilter.h"
#include "gpu/filters/edge/MorphologyShaders.h"

#include <cstddef>
#include <vector>

namespace lamina {

/// What dilation and erosion by the red channel have in common: everything but the direction.
class MorphologyFilter : public GPUImageTwoPassTextureSamplingFilter {
protected:
    /// `radius` in pixels: 0 counts as 1, more than 4 as 4.
    MorphologyFilter(Morphology morphology, unsigned radius);

    /// All places are whole steps away.
    bool readsTexelCentres(int, std::size_t) const override { return stepsAreWholeTexels(); }

    // For descriptions.
    static FilterProperty radiusProperty();
    static std::vector<FilterProperty> spacingProperties();
};

} // namespace lamina
