#include "gpu/filters/edge/MorphologyFilter.h"

namespace lamina {

MorphologyFilter::MorphologyFilter(Morphology morphology, unsigned radius)
    : GPUImageTwoPassTextureSamplingFilter(morphologyVertexShader(radius), morphologyFragmentShader(morphology, radius),
                                           morphologyVertexShader(radius), morphologyFragmentShader(morphology, radius))
{
}

FilterProperty MorphologyFilter::radiusProperty()
{
    return {"radius", 1, {1, kLargestMorphologyRadius}, "pixels", "Distance up to which neighbours are looked at", {}};
}

std::vector<FilterProperty> MorphologyFilter::spacingProperties()
{
    using Base = GPUImageTwoPassTextureSamplingFilter;
    return {
        filterProperty("verticalTexelSpacing", &Base::setVerticalTexelSpacing, 1.0F, {0, 8}, "pixels",
                       "Distance of the neighbours downwards"),
        filterProperty("horizontalTexelSpacing", &Base::setHorizontalTexelSpacing, 1.0F, {0, 8}, "pixels",
                       "Distance of the neighbours across"),
    };
}

} // namespace lamina
