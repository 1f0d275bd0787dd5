#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/kernels/KernelFrame.h"
#include "platform/gl/GLHeaders.h"

namespace lamina {

/// Takes white haze away, or adds it, in strips from top to bottom.
///
///   d = y slope + distance,   out = (in - d) / (1 - d),   on all four channels
///
/// y is 0 at the top and 1 at the bottom of the input as it comes, before the slot's rotation; `in` is straight, as
/// stored. Positive d darkens and raises contrast, negative d adds haze. Alpha takes part: translucent parts grow
/// thinner with positive d. Where d is 1 everything becomes 0. Defaults: distance 0.2, slope 0; useful from -0.3 to
/// 0.3.
class GPUImageHazeFilter : public GPUImageFilter {
public:
    GPUImageHazeFilter();
    static FilterDescription describe();

    /// d at the top.
    float distance() const { return m_distance; }
    void setDistance(float distance);
    /// What d gains from top to bottom.
    float slope() const { return m_slope; }
    void setSlope(float slope);

protected:
    FilterKernel kernel() const override;

private:
    GLint m_distanceUniform;
    GLint m_slopeUniform;
    float m_distance = 0;
    float m_slope = 0;
};

} // namespace lamina
