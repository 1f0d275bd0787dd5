#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImage3x3TextureSamplingFilter.h"
#include "platform/gl/GLHeaders.h"

namespace lamina {

/// Keeps the peaks that reach a threshold: `GPUImageNonMaximumSuppressionFilter`, and black as well where the value is
/// below `threshold`.
///
/// The value is red; of a packed colour space red + 256 green + 65536 blue, in which counts are kept that outgrow a
/// byte.
class GPUImageThresholdedNonMaximumSuppressionFilter : public GPUImage3x3TextureSamplingFilter {
public:
    static FilterDescription describe();

    explicit GPUImageThresholdedNonMaximumSuppressionFilter(bool packedColorspace = false);

    /// The least value that stays, 0.9 at first; 1 is a full red. 0 keeps every peak.
    float threshold() const { return m_threshold; }
    void setThreshold(float threshold);

private:
    GLint m_thresholdUniform;
    float m_threshold = 0;
};

} // namespace lamina
