#include "gpu/filters/color/GpuImageCustomHue.h"

namespace lamina {

namespace {

constexpr const char* kCustomHueConstants = R"(
const vec4 kRGBToI = vec4(0.595716, -0.474453, -0.321263, 0.0);
const vec4 kYIQToR = vec4(1.0, 0.2563, 0.6210, 0.0);
)";

} // namespace

GpuImageCustomHue::GpuImageCustomHue()
    : HueRotationFilter(kCustomHueConstants, 120)
{
}

FilterDescription GpuImageCustomHue::describe()
{
    using Self = GpuImageCustomHue;
    return filterDescription<Self>(
        "GpuImageCustomHue", "editor", 1, "Shifts the colours and turns their hue",
        {filterProperty("hue", &Self::setHue, 90.0F, {0, 240}, "units of 1.5 degrees", "Angle by which colours turn")});
}

} // namespace lamina
