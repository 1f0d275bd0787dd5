#include "gpu/filters/edge/GPUImageRGBDilationFilter.h"

namespace lamina {

GPUImageRGBDilationFilter::GPUImageRGBDilationFilter(unsigned radius)
    : MorphologyFilter(Morphology::Dilation, radius, MorphologyChannels::All)
{
}

FilterDescription GPUImageRGBDilationFilter::describe()
{
    return filterDescriptionWithRadius<GPUImageRGBDilationFilter>(
        "GPUImageRGBDilationFilter", "edge", "Lets bright areas grow, in colour", radiusProperty(),
        morphologySpacingProperties<GPUImageRGBDilationFilter>());
}

} // namespace lamina
