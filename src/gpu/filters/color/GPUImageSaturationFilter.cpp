#include "gpu/filters/color/GPUImageSaturationFilter.h"

namespace lamina {

namespace {

constexpr float kStart = 1;

constexpr const char* kStatements = R"(
    vec3 grey = vec3(luminanceOf(color.rgb));
    gl_FragColor = vec4(grey + (color.rgb - grey) * saturation, color.a);
)";

} // namespace

GPUImageSaturationFilter::GPUImageSaturationFilter()
    : ColorValueFilter("saturation", kStatements, kStart)
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
