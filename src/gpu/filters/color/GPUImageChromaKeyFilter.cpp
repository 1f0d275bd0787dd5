#include "gpu/filters/color/GPUImageChromaKeyFilter.h"

#include "gpu/filters/color/ColorShaders.h"

namespace lamina {

GPUImageChromaKeyFilter::GPUImageChromaKeyFilter()
    : ChromaKeying(colorShader(kChromaKeyFunctions, R"(
    gl_FragColor = vec4(color.rgb, color.a * keptShare(color.rgb));
)"))
{
}

FilterDescription GPUImageChromaKeyFilter::describe()
{
    return filterDescription<GPUImageChromaKeyFilter>("GPUImageChromaKeyFilter", "colour", 1,
                                                      "Makes one colour transparent, as of a green screen",
                                                      keyingProperties(), keyingSelectors());
}

} // namespace lamina
