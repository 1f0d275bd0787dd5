#include "gpu/filters/effect/GPUImageBulgeDistortionFilter.h"

#include "gpu/core/FilterRegistry.h"

namespace lamina {

namespace {

constexpr float kRadius = 0.25F;

} // namespace

GPUImageBulgeDistortionFilter::GPUImageBulgeDistortionFilter()
    : RadialDistortionFilter("square(1.0 - (radius - away) / radius * scale)", kRadius)
{
}

FilterDescription GPUImageBulgeDistortionFilter::describe()
{
    return filterDescription<GPUImageBulgeDistortionFilter>(
        "GPUImageBulgeDistortionFilter", "effect", 1, "Swells what lies in a circle",
        distortionProperties(kRadius, {-1, 1}, "Above 0 magnified, below 0 shrunk"));
}

} // namespace lamina
