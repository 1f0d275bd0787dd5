#include "gpu/filters/effect/GPUImagePinchDistortionFilter.h"

#include "gpu/core/FilterRegistry.h"

namespace lamina {

namespace {

constexpr float kRadius = 1;

} // namespace

GPUImagePinchDistortionFilter::GPUImagePinchDistortionFilter()
    : RadialDistortionFilter("1.0 + (0.5 - away) / 0.5 * scale", kRadius)
{
}

FilterDescription GPUImagePinchDistortionFilter::describe()
{
    return filterDescription<GPUImagePinchDistortionFilter>(
        "GPUImagePinchDistortionFilter", "effect", 1, "Draws what lies in a circle together",
        distortionProperties(kRadius, {-2, 2}, "Above 0 pinched, below 0 swollen"));
}

} // namespace lamina
