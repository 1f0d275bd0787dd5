#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageTwoPassTextureSamplingFilter.h"
#include "gpu/filters/edge/MorphologyShaders.h"
#include "gpu/kernels/KernelFrame.h"

#include <cstddef>
#include <vector>

namespace lamina {

/// What dilation and erosion have in common: everything but the direction, and whether they look at red alone.
class MorphologyFilter : public GPUImageTwoPassTextureSamplingFilter {
public:
    /// For descriptions, of filters that are made of these too.
    static FilterProperty radiusProperty();

protected:
    FilterKernel kernel() const override;

    /// `radius` in pixels: 0 counts as 1, more than 4 as 4.
    MorphologyFilter(Morphology morphology, unsigned radius, MorphologyChannels channels = MorphologyChannels::Red);
    /// With shaders for another device than that at hand.
    MorphologyFilter(Morphology morphology, unsigned radius, MorphologyChannels channels, MorphologyPlaces places);

    /// All places are whole steps away.
    bool readsTexelCentres(int, std::size_t) const override { return stepsAreWholeTexels(); }

private:
    Morphology m_morphology;
    MorphologyChannels m_channels;
    unsigned m_radius;
};

/// For descriptions: the spacings of a filter that has their setters.
template <class Filter>
std::vector<FilterProperty> morphologySpacingProperties()
{
    return {
        filterProperty("verticalTexelSpacing", &Filter::setVerticalTexelSpacing, 1.0F, {0, 8}, "pixels",
                       "Distance of the neighbours downwards"),
        filterProperty("horizontalTexelSpacing", &Filter::setHorizontalTexelSpacing, 1.0F, {0, 8}, "pixels",
                       "Distance of the neighbours across"),
    };
}

} // namespace lamina
