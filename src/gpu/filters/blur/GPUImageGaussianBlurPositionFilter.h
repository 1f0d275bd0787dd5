#pragma once

#include "gpu/core/AspectRatioFilter.h"
#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageTwoPassTextureSamplingFilter.h"
#include "platform/base/CGGeometry.h"
#include "platform/gl/GLHeaders.h"

#include <cstddef>

namespace lamina {

/// Blurs within a circle, as one makes a face unknown, and leaves the rest.
///
///   out(p) = sum over |i| <= 4 of w(|i|) in(p + i step)   within the circle, downwards, then the same across
///   out(p) = in(p)                                        elsewhere
///   w      = 0.18, 0.15, 0.12, 0.09, 0.05
///
/// on all four channels, straight, as stored. The circle is sharp, round by `aspectRatio`, the height over the width of
/// the picture unless one is set. Beyond the border the outermost pixels go on.
class GPUImageGaussianBlurPositionFilter : public AspectRatioFilter<GPUImageTwoPassTextureSamplingFilter> {
public:
    static FilterDescription describe();

    GPUImageGaussianBlurPositionFilter();

    /// Distance of the samples in pixels, 2 at first.
    float blurSize() const { return static_cast<float>(verticalTexelSpacing()); }
    void setBlurSize(float pixels);
    /// Middle of the circle in shares of the width and height, from the top left corner; (0.5, 0.5) at first.
    CGPoint blurCenter() const { return center(); }
    void setBlurCenter(CGPoint center) { setCenter(center); }
    /// Radius of the circle in widths of the picture; 0.25 at first.
    float blurRadius() const { return m_blurRadius; }
    void setBlurRadius(float radius);

protected:
    bool readsTexelCentres(int, std::size_t) const override { return stepsAreWholeTexels(); }

private:
    GLint m_firstRadiusUniform;
    GLint m_secondRadiusUniform;
    float m_blurRadius = 0;
};

} // namespace lamina
