#include "gpu/filters/analysis/GPUImageShiTomasiFeatureDetectionFilter.h"

#include "gpu/core/FilterRegistry.h"

namespace lamina {

namespace {

constexpr float kStartSensitivity = 1.5F;

} // namespace

GPUImageShiTomasiFeatureDetectionFilter::GPUImageShiTomasiFeatureDetectionFilter()
    : GPUImageHarrisCornerDetectionFilter("d.x + d.y - sqrt((d.x - d.y) * (d.x - d.y) + 4.0 * z * z)",
                                          kStartSensitivity)
{
}

FilterDescription GPUImageShiTomasiFeatureDetectionFilter::describe()
{
    return cornerDescription<GPUImageShiTomasiFeatureDetectionFilter>(
        "GPUImageShiTomasiFeatureDetectionFilter", "Finds corners, by Shi and Tomasi", kStartSensitivity);
}

} // namespace lamina
