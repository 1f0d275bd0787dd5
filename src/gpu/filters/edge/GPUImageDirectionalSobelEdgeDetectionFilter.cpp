#include "gpu/filters/edge/GPUImageDirectionalSobelEdgeDetectionFilter.h"

#include "gpu/filters/edge/GradientShader.h"

namespace lamina {

namespace {

// Linear reads between texels are off by less than half a step of 8 bits: nothing rises by so little.
constexpr const char* kStatements = R"(
    float steepness = length(gradient);
    vec2 direction = gradient / max(steepness, 0.00196) * step(0.00196, steepness);
    gl_FragColor = vec4(steepness, (direction + 1.0) / 2.0, 1.0);
)";

} // namespace

GPUImageDirectionalSobelEdgeDetectionFilter::GPUImageDirectionalSobelEdgeDetectionFilter()
    : GPUImage3x3TextureSamplingFilter(gradientShader(EdgeOperator::Sobel, "", kStatements))
{
}

FilterDescription GPUImageDirectionalSobelEdgeDetectionFilter::describe()
{
    return filterDescription<GPUImageDirectionalSobelEdgeDetectionFilter>(
        "GPUImageDirectionalSobelEdgeDetectionFilter", "edge", 1,
        "Edges of the red channel, coloured by their direction", texelProperties());
}

} // namespace lamina
