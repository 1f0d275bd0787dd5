#include "gpu/filters/color/GPUImageContrastFilter.h"
#include "gpu/kernels/ColorKernels.h"
#include "gpu/kernels/KernelFrame.h"

#include <cstddef>

namespace lamina {

namespace {

constexpr float kStart = 1;

constexpr const char* kStatements = R"(
    gl_FragColor = vec4((color.rgb - 0.5) * contrast + 0.5, color.a);
)";

FilterKernel kernelFor(float contrast)
{
    kernels::ColorMatrix matrix = kernels::kSameColors;
    for (std::size_t c = 0; c < 3; ++c) {
        matrix[c][c] = contrast;
        matrix[c][4] = 0.5F - 0.5F * contrast;
    }
    return kernels::matrixKernel(matrix);
}

} // namespace

GPUImageContrastFilter::GPUImageContrastFilter()
    : ColorValueFilter("contrast", kStatements, kStart, kernelFor)
{
}

FilterDescription GPUImageContrastFilter::describe()
{
    using Self = GPUImageContrastFilter;
    return filterDescription<Self>(
        "GPUImageContrastFilter", "colour", 1, "Spreads colours apart, or draws them together",
        {filterProperty("contrast", &Self::setContrast, kStart, {0, 4}, "", "Distance from the middle, as a factor")});
}

} // namespace lamina
