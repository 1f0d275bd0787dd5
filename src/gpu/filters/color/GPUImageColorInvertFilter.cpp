#include "gpu/filters/color/GPUImageColorInvertFilter.h"

#include "gpu/filters/color/ColorShaders.h"

namespace lamina {

GPUImageColorInvertFilter::GPUImageColorInvertFilter()
    : GPUImageFilter(colorShader("", "    gl_FragColor = vec4(1.0 - color.rgb, color.a);"))
{
}

FilterDescription GPUImageColorInvertFilter::describe()
{
    return filterDescription<GPUImageColorInvertFilter>("GPUImageColorInvertFilter", "colour", 1,
                                                        "The negative of a picture");
}

} // namespace lamina
