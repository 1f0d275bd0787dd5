#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilter.h"
#include "platform/gl/GLHeaders.h"

namespace lamina {

/// Blurs along a direction, as a camera does that moves while the shutter is open.
///
///   out(p) = sum over |i| <= 4 of w(|i|) in(p + i step),   step = blurSize (cos blurAngle, sin blurAngle) pixels
///   w      = 0.18, 0.15, 0.12, 0.09, 0.05
///
/// on all four channels, straight, as stored. Beyond the border the outermost pixels go on.
class GPUImageMotionBlurFilter : public GPUImageFilter {
public:
    static FilterDescription describe();

    GPUImageMotionBlurFilter();

    /// Distance of the nine samples in pixels, 2.5 at first. From any thread; waits for the queue.
    float blurSize() const;
    void setBlurSize(float pixels);
    /// Degrees, 0 at first: along the rows; 45 from the top left to the bottom right, 90 along the columns. From any
    /// thread; waits for the queue.
    float blurAngle() const;
    void setBlurAngle(float degrees);

    void setUniformsForProgramAtIndex(int programIndex) override;

private:
    GLint m_stepUniform;
    float m_blurSize;
    float m_blurAngle;
};

} // namespace lamina
