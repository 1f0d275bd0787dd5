#include "gpu/filters/edge/GPUImageColorPackingFilter.h"

namespace lamina {

GPUImageColorPackingFilter::GPUImageColorPackingFilter()
    : GPUImage3x3TextureSamplingFilter(
          neighbourhoodShader(NeighbourValue::Red, "", "    gl_FragColor = vec4(left, top, right, bottom);\n"))
{
}

FilterDescription GPUImageColorPackingFilter::describe()
{
    return filterDescription<GPUImageColorPackingFilter>(
        "GPUImageColorPackingFilter", "detection", 1,
        "The reds of the left, top, right and bottom neighbours as red, green, blue and alpha", texelProperties());
}

} // namespace lamina
