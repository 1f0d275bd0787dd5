#include "gpu/filters/color/GPUImageColorInvertFilter.h"
#include "gpu/kernels/ColorKernels.h"

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

FilterKernel GPUImageColorInvertFilter::kernel() const
{
    return kernels::matrixKernel({{{-1, 0, 0, 0, 1}, {0, -1, 0, 0, 1}, {0, 0, -1, 0, 1}, {0, 0, 0, 1, 0}}});
}

} // namespace lamina
