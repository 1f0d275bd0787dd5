#include "gpu/filters/color/GPUImageHueFilter.h"

#include "gpu/core/GPUVectors.h"

namespace lamina {

namespace {

constexpr GPUVector3 kRGBToI{0.595716F, -0.274453F, -0.321263F};
constexpr GPUVector3 kYIQToR{1.0F, 0.9563F, 0.6210F};

} // namespace

GPUImageHueFilter::GPUImageHueFilter()
    : HueRotationFilter(kRGBToI, kYIQToR, 180)
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
