#include "gpu/filters/color/GPUImageBrightnessFilter.h"
#include "gpu/kernels/ColorKernels.h"
#include "gpu/kernels/KernelFrame.h"

#include <cstddef>

namespace lamina {

namespace {

constexpr float kStart = 0;

constexpr const char* kStatements = R"(
    gl_FragColor = vec4(color.rgb + brightness, color.a);
)";

FilterKernel kernelFor(float brightness)
{
    kernels::ColorMatrix matrix = kernels::kSameColors;
    for (std::size_t c = 0; c < 3; ++c)
        matrix[c][4] = brightness;
    return kernels::matrixKernel(matrix);
}

} // namespace

GPUImageBrightnessFilter::GPUImageBrightnessFilter()
    : ColorValueFilter("brightness", kStatements, kStart, kernelFor)
{
}

FilterDescription GPUImageBrightnessFilter::describe()
{
    using Self = GPUImageBrightnessFilter;
    return filterDescription<Self>(
        "GPUImageBrightnessFilter", "colour", 1, "Lightens or darkens by the same amount everywhere",
        {filterProperty("brightness", &Self::setBrightness, kStart, {-1, 1}, "", "Added to every channel")});
}

} // namespace lamina
