#include "gpu/filters/blur/GPUImageKuwaharaRadius3Filter.h"

#include "gpu/filters/blur/KuwaharaShaders.h"
#include "gpu/filters/blur/StepVertexShader.h"

namespace lamina {

GPUImageKuwaharaRadius3Filter::GPUImageKuwaharaRadius3Filter()
    : PixelStepFilter(kStepVertexShader, unrolledKuwaharaShader(3), "texelWidthOffset", "texelHeightOffset")
{
}

FilterDescription GPUImageKuwaharaRadius3Filter::describe()
{
    return filterDescription<GPUImageKuwaharaRadius3Filter>(
        "GPUImageKuwaharaRadius3Filter", "blur", 1, "An oil painting with a brush of 3 pixels, faster than any radius");
}

} // namespace lamina
