#include "gpu/filters/color/GPUImageSaturationFilter.h"
#include "gpu/kernels/ColorKernels.h"
#include "gpu/kernels/KernelFrame.h"

#include <array>
#include <cstddef>

namespace lamina {

namespace {

constexpr float kStart = 1;

constexpr const char* kStatements = R"(
    vec3 grey = vec3(luminanceOf(color.rgb));
    gl_FragColor = vec4(grey + (color.rgb - grey) * saturation, color.a);
)";

FilterKernel kernelFor(float saturation)
{
    constexpr std::array<float, 3> kLuminance{0.2125F, 0.7154F, 0.0721F};
    kernels::ColorMatrix matrix = kernels::kSameColors;
    for (std::size_t c = 0; c < 3; ++c) {
        for (std::size_t from = 0; from < 3; ++from)
            matrix[c][from] = kLuminance[from] * (1 - saturation) + (c == from ? saturation : 0.0F);
    }
    return kernels::matrixKernel(matrix);
}

} // namespace

GPUImageSaturationFilter::GPUImageSaturationFilter()
    : ColorValueFilter("saturation", kStatements, kStart, kernelFor)
{
}

FilterDescription GPUImageSaturationFilter::describe()
{
    using Self = GPUImageSaturationFilter;
    return filterDescription<Self>("GPUImageSaturationFilter", "colour", 1, "Makes colours stronger or paler",
                                   {filterProperty("saturation", &Self::setSaturation, kStart, {0, 2}, "",
                                                   "0 is grey, 1 the picture as it is, above 1 stronger")});
}

} // namespace lamina
