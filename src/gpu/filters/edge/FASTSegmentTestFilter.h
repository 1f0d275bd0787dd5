#pragma once

#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/TexelSampling.h"
#include "platform/gl/GLHeaders.h"

namespace lamina {

/// Finds corners in the red channel by a circle of sixteen pixels around: one where at least twelve in a row are all
/// brighter, or all darker, than the middle by more than `threshold`.
///
///   b = sum over the brighter points of (difference - threshold), k = the same over the darker ones
///   out.rgb = corner ? threshold + max(b, k) / 16 : 0,   out.a = 1
///
/// so that stronger corners are brighter, and the faintest has the threshold.
class FASTSegmentTestFilter : public TexelSampling<GPUImageFilter> {
public:
    static constexpr float kStart = 0.1F;

    FASTSegmentTestFilter();

    /// In shares of the way from black to white; `kStart` at first.
    float threshold() const { return m_threshold; }
    void setThreshold(float threshold);

private:
    GLint m_thresholdUniform;
    float m_threshold = 0;
};

} // namespace lamina
