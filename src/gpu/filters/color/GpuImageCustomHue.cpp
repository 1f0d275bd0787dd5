#include "gpu/filters/color/GpuImageCustomHue.h"

#include "gpu/core/GPUVectors.h"

namespace lamina {

namespace {

constexpr GPUVector3 kRGBToI{0.595716F, -0.474453F, -0.321263F};
constexpr GPUVector3 kYIQToR{1.0F, 0.2563F, 0.6210F};

} // namespace

GpuImageCustomHue::GpuImageCustomHue()
    : HueRotationFilter(kRGBToI, kYIQToR, 120)
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
