#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/edge/GPUImageSobelEdgeDetectionFilter.h"

namespace lamina {

/// Bright edges on black by Prewitt's operator: as `GPUImageSobelEdgeDetectionFilter`, but the neighbours to the sides
/// count no more than those at the corners; up to 3.2 for an edge from black to white.
class GPUImagePrewittEdgeDetectionFilter : public GPUImageSobelEdgeDetectionFilter {
public:
    static FilterDescription describe();

    GPUImagePrewittEdgeDetectionFilter();
};

} // namespace lamina
