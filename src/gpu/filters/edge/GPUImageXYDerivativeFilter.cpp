// The entries of the structure tensor (Harris and Stephens, A Combined Corner and Edge Detector, 1988).

#include "gpu/filters/edge/GPUImageXYDerivativeFilter.h"

namespace lamina {

namespace {

constexpr const char* kStatements = R"(
    vec2 derivative = gradient * edgeStrength;
    gl_FragColor = vec4(derivative * derivative, (derivative.x * derivative.y + 1.0) / 2.0, 1.0);
)";

} // namespace

GPUImageXYDerivativeFilter::GPUImageXYDerivativeFilter()
    : GPUImageSobelEdgeDetectionFilter(EdgeOperator::Sobel, "", kStatements)
{
}

FilterDescription GPUImageXYDerivativeFilter::describe()
{
    return filterDescription<GPUImageXYDerivativeFilter>(
        "GPUImageXYDerivativeFilter", "detection", 1, "Squares and product of the slopes across and down, for corners",
        properties());
}

} // namespace lamina
