#include "gpu/filters/color/GPUImageExposureFilter.h"
#include "gpu/kernels/ColorKernels.h"
#include "gpu/kernels/KernelFrame.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace lamina {

namespace {

constexpr float kStart = 0;

constexpr const char* kStatements = R"(
    // What 2^1000 would be times black is no number.
    gl_FragColor = vec4(color.rgb * exp2(clamp(exposure, -10.0, 10.0)), color.a);
)";

FilterKernel kernelFor(float exposure)
{
    kernels::ColorMatrix matrix = kernels::kSameColors;
    for (std::size_t c = 0; c < 3; ++c)
        matrix[c][c] = std::exp2(std::clamp(exposure, -10.0F, 10.0F));
    return kernels::matrixKernel(matrix);
}

} // namespace

GPUImageExposureFilter::GPUImageExposureFilter()
    : ColorValueFilter("exposure", kStatements, kStart, kernelFor)
{
}

FilterDescription GPUImageExposureFilter::describe()
{
    using Self = GPUImageExposureFilter;
    return filterDescription<Self>(
        "GPUImageExposureFilter", "colour", 1, "Lightens or darkens as a longer or shorter exposure would",
        {filterProperty("exposure", &Self::setExposure, kStart, {-4, 4}, "", "1 doubles every value, -1 halves it")});
}

} // namespace lamina
