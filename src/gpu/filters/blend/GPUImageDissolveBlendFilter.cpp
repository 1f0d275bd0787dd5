// A linear cross-fade (Porter and Duff, Compositing Digital Images, 1984: "dissolve" and "plus").

#include "gpu/filters/blend/GPUImageDissolveBlendFilter.h"

#include "gpu/filters/blend/BlendShader.h"

namespace lamina {

GPUImageDissolveBlendFilter::GPUImageDissolveBlendFilter()
    : MixtureBlendFilter("mix(base, overlay, mixturePercent)")
{
}

FilterDescription GPUImageDissolveBlendFilter::describe()
{
    return blendDescription<GPUImageDissolveBlendFilter>("GPUImageDissolveBlendFilter",
                                                         "Fades from the base to the overlay", {mixProperty()});
}

} // namespace lamina
