#pragma once

#include "gpu/filters/analysis/GPUImageHarrisCornerDetectionFilter.h"

namespace lamina {

/// Finds corners as `GPUImageHarrisCornerDetectionFilter` does, by how much changes in the direction of least change:
///
///   cornerness = sensitivity (d.x + d.y - sqrt((d.x - d.y)^2 + 4 z^2))
///
/// twice the smaller eigenvalue, after Shi and Tomasi, Good Features to Track, 1994. `sensitivity` is 1.5 at first.
class GPUImageShiTomasiFeatureDetectionFilter : public GPUImageHarrisCornerDetectionFilter {
public:
    GPUImageShiTomasiFeatureDetectionFilter();
    static FilterDescription describe();
};

} // namespace lamina
