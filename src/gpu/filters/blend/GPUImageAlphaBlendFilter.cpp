// The operator "over" on straight colours, with the base taken for opaque (Porter and Duff, Compositing Digital Images,
// 1984).

#include "gpu/filters/blend/GPUImageAlphaBlendFilter.h"
#include "gpu/kernels/ColorKernels.h"

#include "gpu/filters/blend/BlendShader.h"

#include <span>

namespace lamina {

GPUImageAlphaBlendFilter::GPUImageAlphaBlendFilter()
    : MixtureBlendFilter("vec4(mix(base.rgb, overlay.rgb, overlay.a * mixturePercent), base.a)")
{
}

FilterDescription GPUImageAlphaBlendFilter::describe()
{
    return blendDescription<GPUImageAlphaBlendFilter>("GPUImageAlphaBlendFilter",
                                                      "Lays the overlay over the base by its alpha", {mixProperty()});
}

FilterKernel GPUImageAlphaBlendFilter::kernel() const
{
    const std::span<const float> mix = mixInForce();
    return mix.empty() ? FilterKernel() : kernels::alphaBlendKernel(mix[0]);
}

} // namespace lamina
