#include "gpu/filters/edge/GPUImageThresholdSketchFilter.h"

namespace lamina {

GPUImageThresholdSketchFilter::GPUImageThresholdSketchFilter()
    : GPUImageThresholdEdgeDetectionFilter("    gl_FragColor = vec4(vec3(1.0 - edge), color.a);\n")
{
}

FilterDescription GPUImageThresholdSketchFilter::describe()
{
    return filterDescription<GPUImageThresholdSketchFilter>("GPUImageThresholdSketchFilter", "edge", 1,
                                                            "A drawing in ink: black edges on white", properties());
}

} // namespace lamina
