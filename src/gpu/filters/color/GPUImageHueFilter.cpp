#include "gpu/filters/color/GPUImageHueFilter.h"

namespace lamina {

namespace {

constexpr const char* kHueConstants = R"(
const vec4 kRGBToI = vec4(0.595716, -0.274453, -0.321263, 0.0);
const vec4 kYIQToR = vec4(1.0, 0.9563, 0.6210, 0.0);
)";

} // namespace

GPUImageHueFilter::GPUImageHueFilter()
    : HueRotationFilter(kHueConstants, 180)
{
}

FilterDescription GPUImageHueFilter::describe()
{
    using Self = GPUImageHueFilter;
    return filterDescription<Self>(
        "GPUImageHueFilter", "editor", 1, "Turns the hue of every colour",
        {filterProperty("hue", &Self::setHue, 90.0F, {0, 360}, "degrees", "Angle by which colours turn")});
}

} // namespace lamina
