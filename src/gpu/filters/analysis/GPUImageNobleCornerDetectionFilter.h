#pragma once

#include "gpu/filters/analysis/GPUImageHarrisCornerDetectionFilter.h"

namespace lamina {

/// Finds corners as `GPUImageHarrisCornerDetectionFilter` does, by a measure without a constant:
///
///   cornerness = sensitivity (d.x d.y - z^2) / (d.x + d.y),   0 where nothing changes
///
/// after Noble, Descriptions of Image Surfaces, 1989.
class GPUImageNobleCornerDetectionFilter : public GPUImageHarrisCornerDetectionFilter {
public:
    GPUImageNobleCornerDetectionFilter();
    static FilterDescription describe();
};

} // namespace lamina
