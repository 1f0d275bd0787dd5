#include "gpu/filters/color/GPUImageGammaFilter.h"
#include "gpu/kernels/ColorKernels.h"
#include "gpu/kernels/KernelFrame.h"

#include <cmath>

namespace lamina {

namespace {

constexpr float kStart = 1;

constexpr const char* kStatements = R"(
    vec3 curved = gamma < 0.0 ? vec3(1.0) : power(color.rgb, vec3(gamma));
    gl_FragColor = vec4(curved, color.a);
)";

FilterKernel kernelFor(float gamma)
{
    const kernels::ChannelTable table = kernels::channelTable([gamma](float value) {
        const float raised = value > 0 ? std::pow(value, gamma) : 0.0F;
        return gamma < 0 ? 1.0F : raised;
    });
    return std::isfinite(gamma) ? kernels::tableKernel({table, table, table}) : FilterKernel();
}

} // namespace

GPUImageGammaFilter::GPUImageGammaFilter()
    : ColorValueFilter("gamma", kStatements, kStart, kernelFor)
{
}

FilterDescription GPUImageGammaFilter::describe()
{
    using Self = GPUImageGammaFilter;
    return filterDescription<Self>(
        "GPUImageGammaFilter", "colour", 1, "Lightens or darkens the middle tones; black and white stay",
        {filterProperty("gamma", &Self::setGamma, kStart, {0, 3}, "", "Exponent: below 1 lightens, above 1 darkens")});
}

} // namespace lamina
