#include "gpu/filters/blend/GPUImageChromaKeyBlendFilter.h"

#include "gpu/filters/blend/BlendShader.h"

namespace lamina {

GPUImageChromaKeyBlendFilter::GPUImageChromaKeyBlendFilter()
    : ChromaKeying(blendShader("mix(overlay, base, keptShare(base.rgb))", kChromaKeyFunctions))
{
}

FilterDescription GPUImageChromaKeyBlendFilter::describe()
{
    return blendDescription<GPUImageChromaKeyBlendFilter>("GPUImageChromaKeyBlendFilter",
                                                          "Shows the overlay where the base has a backdrop's colour",
                                                          keyingProperties(), keyingSelectors());
}

} // namespace lamina
