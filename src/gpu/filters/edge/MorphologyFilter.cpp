#include "gpu/filters/edge/MorphologyFilter.h"
#include "gpu/kernels/NeighbourKernels.h"

#include "gpu/core/GPUImageContext.h"

#include <algorithm>

namespace lamina {

MorphologyFilter::MorphologyFilter(Morphology morphology, unsigned radius, MorphologyChannels channels)
    : MorphologyFilter(morphology, radius, channels,
                       GPUImageContext::deviceDrawsOnProcessor() ? MorphologyPlaces::Computed
                                                                 : MorphologyPlaces::HandedOver)
{
}

MorphologyFilter::MorphologyFilter(Morphology morphology, unsigned radius, MorphologyChannels channels,
                                   MorphologyPlaces places)
    : GPUImageTwoPassTextureSamplingFilter(
          morphologyVertexShader(places, radius), morphologyFragmentShader(morphology, channels, places, radius),
          morphologyVertexShader(places, radius), morphologyFragmentShader(morphology, channels, places, radius))
    , m_morphology(morphology)
    , m_channels(channels)
    , m_radius(radius)
{
}

FilterProperty MorphologyFilter::radiusProperty()
{
    return {"radius", 1, {1, kLargestMorphologyRadius}, "pixels", "Distance up to which neighbours are looked at", {}};
}

FilterKernel MorphologyFilter::kernel() const
{
    if (m_verticalTexelSpacing != 1 || m_horizontalTexelSpacing != 1)
        return {};
    return kernels::extremeKernel(
        m_morphology == Morphology::Erosion ? kernels::Extreme::Least : kernels::Extreme::Greatest,
        m_channels == MorphologyChannels::Red ? kernels::ExtremeOf::Red : kernels::ExtremeOf::EachChannel,
        static_cast<int>(std::clamp(m_radius, 1U, kLargestMorphologyRadius)));
}

} // namespace lamina
