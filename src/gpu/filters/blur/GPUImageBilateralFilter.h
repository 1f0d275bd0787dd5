#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/blur/GPUImageGaussianBlurFilter.h"
#include "platform/gl/GLHeaders.h"

#include <cstddef>

namespace lamina {

/// Smooths areas and leaves edges: a neighbour counts the less, the more its colour differs (Tomasi and Manduchi,
/// Bilateral Filtering for Gray and Color Images, 1998; along lines: Pham and van Vliet, Separable Bilateral Filtering
/// for Fast Video Preprocessing, 2005).
///
///   out(p) = sum over |i| <= 4 of v(i) in(p + i step) / sum of all v(i)   downwards, then the same across
///   v(i)   = w(|i|) (1 - min(distance(in(p + i step), in(p)) distanceNormalizationFactor, 1))
///   w      = 0.18, 0.15, 0.12, 0.09, 0.05
///
/// on all four channels, straight, as stored, which the distance is between as well; a step is one pixel times
/// `texelSpacingMultiplier`, 4 at first. Beyond the border the outermost pixels go on.
///
/// Nine samples are all there are: `blurRadiusInPixels` and the fractions of the base, however set, change nothing.
class GPUImageBilateralFilter : public GPUImageGaussianBlurFilter {
public:
    static FilterDescription describe();

    GPUImageBilateralFilter();

    /// 8 at first: colours that are an eighth of a channel apart no longer mix. 0 mixes all, as a blur.
    float distanceNormalizationFactor() const { return m_distanceNormalizationFactor; }
    void setDistanceNormalizationFactor(float factor);

protected:
    void useRadius(double) override {}
    bool readsTexelCentres(int, std::size_t) const override { return stepsAreWholeTexels(); }

private:
    GLint m_firstUniform;
    GLint m_secondUniform;
    float m_distanceNormalizationFactor = 0;
};

} // namespace lamina
