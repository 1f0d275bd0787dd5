#include "gpu/filters/color/GPUImageOpacityFilter.h"
#include "gpu/kernels/ColorKernels.h"
#include "gpu/kernels/KernelFrame.h"

namespace lamina {

namespace {

constexpr float kStart = 1;

constexpr const char* kStatements = R"(
    gl_FragColor = vec4(color.rgb, color.a * opacity);
)";

FilterKernel kernelFor(float opacity)
{
    kernels::ColorMatrix matrix = kernels::kSameColors;
    matrix[3][3] = opacity;
    return kernels::matrixKernel(matrix);
}

} // namespace

GPUImageOpacityFilter::GPUImageOpacityFilter()
    : ColorValueFilter("opacity", kStatements, kStart, kernelFor)
{
}

FilterDescription GPUImageOpacityFilter::describe()
{
    using Self = GPUImageOpacityFilter;
    return filterDescription<Self>(
        "GPUImageOpacityFilter", "colour", 1, "Makes a picture translucent",
        {filterProperty("opacity", &Self::setOpacity, kStart, {0, 1}, "", "Factor of the alpha")});
}

} // namespace lamina
