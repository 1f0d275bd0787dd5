#include "gpu/filters/edge/GPUImageErosionFilter.h"

namespace lamina {

GPUImageErosionFilter::GPUImageErosionFilter(unsigned radius)
    : MorphologyFilter(Morphology::Erosion, radius)
{
}

FilterDescription GPUImageErosionFilter::describe()
{
    return filterDescriptionWithRadius<GPUImageErosionFilter>(
        "GPUImageErosionFilter", "editor", "Lets dark areas grow, by the red channel; the result is grey",
        radiusProperty(), morphologySpacingProperties<GPUImageErosionFilter>());
}

} // namespace lamina
