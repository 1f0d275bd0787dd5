#include "gpu/filters/edge/GPUImageDilationFilter.h"

namespace lamina {

GPUImageDilationFilter::GPUImageDilationFilter(unsigned radius)
    : MorphologyFilter(Morphology::Dilation, radius)
{
}

FilterDescription GPUImageDilationFilter::describe()
{
    return filterDescriptionWithRadius<GPUImageDilationFilter>(
        "GPUImageDilationFilter", "editor", "Lets bright areas grow, by the red channel; the result is grey",
        radiusProperty(), morphologySpacingProperties<GPUImageDilationFilter>());
}

} // namespace lamina
