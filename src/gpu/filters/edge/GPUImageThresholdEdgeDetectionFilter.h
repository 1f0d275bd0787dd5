#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/edge/GPUImageSobelEdgeDetectionFilter.h"
#include "platform/gl/GLHeaders.h"

#include <string>
#include <vector>

namespace lamina {

/// White edges on black, with nothing in between: what `GPUImageSobelEdgeDetectionFilter` shows, parted at a threshold.
///
///   out.rgb = edgeStrength * sqrt(gx^2 + gy^2) >= threshold ? 1 : 0,   out.a = in.a
class GPUImageThresholdEdgeDetectionFilter : public GPUImageSobelEdgeDetectionFilter {
public:
    static FilterDescription describe();

    GPUImageThresholdEdgeDetectionFilter();

    /// From which steepness an edge shows: 0.25 at first; 0 shows all there is as an edge.
    float threshold() const { return m_threshold; }
    void setThreshold(float threshold);

protected:
    /// `statements` find the edge as `float edge`, 0 or 1, and the grey picture's pixel as `vec4 color`.
    explicit GPUImageThresholdEdgeDetectionFilter(const std::string& statements);

    static std::vector<FilterProperty> properties();

private:
    GLint m_thresholdUniform;
    float m_threshold = 0;
};

} // namespace lamina
