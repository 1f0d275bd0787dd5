#include "gpu/filters/edge/MorphologyFilter.h"

namespace lamina {

MorphologyFilter::MorphologyFilter(Morphology morphology, unsigned radius, MorphologyChannels channels)
    : GPUImageTwoPassTextureSamplingFilter(
          morphologyVertexShader(radius), morphologyFragmentShader(morphology, channels, radius),
          morphologyVertexShader(radius), morphologyFragmentShader(morphology, channels, radius))
{
}

FilterProperty MorphologyFilter::radiusProperty()
{
    return {"radius", 1, {1, kLargestMorphologyRadius}, "pixels", "Distance up to which neighbours are looked at", {}};
}

} // namespace lamina
