#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImage3x3TextureSamplingFilter.h"
#include "gpu/kernels/KernelFrame.h"
#include "platform/gl/GLHeaders.h"

#include <vector>

namespace lamina {

/// Few shades with black edges: what the cartoon looks have in common.
///
///   h = -i(topLeft) - 2 i(top) - i(topRight) + i(bottomLeft) + 2 i(bottom) + i(bottomRight)      i: the red channel
///   v = -i(bottomLeft) - 2 i(left) - i(topLeft) + i(bottomRight) + 2 i(right) + i(topRight)
///   out.rgb = sqrt(h^2 + v^2) < threshold ? floor(in.rgb * levels + 0.5) / levels : 0,   out.a = in.a
///
/// `in` straight, as stored. Edges are looked for in red alone: those between green and blue stay uninked.
class PosterizedEdgesFilter : public GPUImage3x3TextureSamplingFilter {
public:
    explicit PosterizedEdgesFilter(float threshold);

    /// From which steepness an edge goes black; sqrt(h^2 + v^2) is at most 4.5. 0 blackens all.
    float threshold() const { return m_threshold; }
    void setThreshold(float threshold);
    /// Steps from black to white, 10 at first. Fractions count; 0 has no result.
    float quantizationLevels() const { return m_quantizationLevels; }
    void setQuantizationLevels(float levels);

protected:
    FilterKernel kernel() const override;

    static std::vector<FilterProperty> properties(float threshold);

private:
    GLint m_thresholdUniform;
    GLint m_quantizationLevelsUniform;
    float m_threshold = 0;
    float m_quantizationLevels = 0;
};

} // namespace lamina
