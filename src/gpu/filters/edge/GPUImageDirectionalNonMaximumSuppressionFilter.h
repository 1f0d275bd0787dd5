#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/TexelSampling.h"
#include "platform/gl/GLHeaders.h"

namespace lamina {

/// Thins edges to lines of one pixel: of what `GPUImageDirectionalSobelEdgeDetectionFilter` gives, only pixels stay
/// that are the steepest on their way up.
///
///   ahead, behind: the one of the eight neighbours that the direction points to, and the one opposite
///   kept = m >= m(ahead) and m > m(behind),      m: the red channel
///   out.rgb = kept ? smoothstep(lowerThreshold, upperThreshold, m) : 0,   out.a = 1
///
/// Of two that are equally steep the lower one stays; values less than half a step of 8 bits apart are equal.
/// smoothstep is 3 t^2 - 2 t^3 of the share t of the way between the thresholds, cut to 0..1; where they are equal, it
/// is 1 above them.
class GPUImageDirectionalNonMaximumSuppressionFilter : public TexelSampling<GPUImageFilter> {
public:
    static FilterDescription describe();

    GPUImageDirectionalNonMaximumSuppressionFilter();

    /// The steepness from which an edge is white: 0.5 at first.
    float upperThreshold() const { return m_upperThreshold; }
    void setUpperThreshold(float threshold);
    /// The steepness up to which there is none: 0.1 at first.
    float lowerThreshold() const { return m_lowerThreshold; }
    void setLowerThreshold(float threshold);

private:
    GLint m_upperThresholdUniform;
    GLint m_lowerThresholdUniform;
    float m_upperThreshold = 0;
    float m_lowerThreshold = 0;
};

} // namespace lamina
