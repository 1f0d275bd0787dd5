#include "gpu/filters/edge/GPUImageRGBErosionFilter.h"

namespace lamina {

GPUImageRGBErosionFilter::GPUImageRGBErosionFilter(unsigned radius)
    : MorphologyFilter(Morphology::Erosion, radius, MorphologyChannels::All)
{
}

FilterDescription GPUImageRGBErosionFilter::describe()
{
    return filterDescriptionWithRadius<GPUImageRGBErosionFilter>(
        "GPUImageRGBErosionFilter", "edge", "Lets dark areas grow, in colour", radiusProperty(),
        morphologySpacingProperties<GPUImageRGBErosionFilter>());
}

} // namespace lamina
