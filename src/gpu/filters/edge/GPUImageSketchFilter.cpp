#include "gpu/filters/edge/GPUImageSketchFilter.h"

namespace lamina {

GPUImageSketchFilter::GPUImageSketchFilter()
    : GPUImageSobelEdgeDetectionFilter(
          EdgeOperator::Sobel, "", "    gl_FragColor = vec4(vec3(1.0 - length(gradient) * edgeStrength), color.a);\n")
{
}

FilterDescription GPUImageSketchFilter::describe()
{
    return filterDescription<GPUImageSketchFilter>("GPUImageSketchFilter", "edge", 1,
                                                   "A drawing in pencil: grey edges on white", properties());
}

} // namespace lamina
