#include "gpu/filters/analysis/GPUImageNobleCornerDetectionFilter.h"

#include "gpu/core/FilterRegistry.h"

namespace lamina {

namespace {

constexpr float kStartSensitivity = 5;

} // namespace

// Two sums of squares that are not 0 are 1 / 255 at least; where they are, the numerator is not above 0.
GPUImageNobleCornerDetectionFilter::GPUImageNobleCornerDetectionFilter()
    : GPUImageHarrisCornerDetectionFilter("max(d.x * d.y - z * z, 0.0) / max(d.x + d.y, 0.001)", kStartSensitivity)
{
}

FilterDescription GPUImageNobleCornerDetectionFilter::describe()
{
    return cornerDescription<GPUImageNobleCornerDetectionFilter>("GPUImageNobleCornerDetectionFilter",
                                                                 "Finds corners, by Noble", kStartSensitivity);
}

} // namespace lamina
