// One step of hysteresis (Canny, A Computational Approach to Edge Detection, 1986), which would follow lines to their
// ends.

#include "gpu/filters/edge/GPUImageWeakPixelInclusionFilter.h"

namespace lamina {

namespace {

constexpr const char* kStatements = R"(
    float sum = topLeft + top + topRight + left + color.r + right + bottomLeft + bottom + bottomRight;
    gl_FragColor = vec4(vec3(step(1.5, sum) * step(0.01, color.r)), color.a);
)";

} // namespace

GPUImageWeakPixelInclusionFilter::GPUImageWeakPixelInclusionFilter()
    : GPUImage3x3TextureSamplingFilter(neighbourhoodShader(NeighbourValue::Red, "", kStatements))
{
}

FilterDescription GPUImageWeakPixelInclusionFilter::describe()
{
    return filterDescription<GPUImageWeakPixelInclusionFilter>(
        "GPUImageWeakPixelInclusionFilter", "edge", 1, "Closes faint places in lines and drops what stands alone",
        texelProperties());
}

} // namespace lamina
