#include "gpu/filters/color/GPUImageGammaFilter.h"

namespace lamina {

namespace {

constexpr float kStart = 1;

constexpr const char* kStatements = R"(
    vec3 curved = gamma < 0.0 ? vec3(1.0) : power(color.rgb, vec3(gamma));
    gl_FragColor = vec4(curved, color.a);
)";

} // namespace

GPUImageGammaFilter::GPUImageGammaFilter()
    : ColorValueFilter("gamma", kStatements, kStart)
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
