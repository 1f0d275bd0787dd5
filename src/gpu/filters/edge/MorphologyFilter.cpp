#include "gpu/filters/edge/MorphologyFilter.h"

#include "gpu/core/GPUImageContext.h"

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
{
}

FilterProperty MorphologyFilter::radiusProperty()
{
    return {"radius", 1, {1, kLargestMorphologyRadius}, "pixels", "Distance up to which neighbours are looked at", {}};
}

} // namespace lamina
