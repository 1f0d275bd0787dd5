#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/blur/BlurMixture.h"
#include "platform/base/CGGeometry.h"

#include <memory>

namespace lamina {

/// Blurs all but a circle, as a lens does that is wide open.
///
///   out = in + (blurred - in) smoothstep(excludeCircleRadius - excludeBlurSize, excludeCircleRadius, d)
///
/// on all four channels, straight, as stored. d is the distance from `excludeCirclePoint` in widths of the picture;
/// circles are round by `aspectRatio`. `blurred` is `GPUImageGaussianBlurFilter`'s.
class GPUImageGaussianSelectiveBlurFilter : public BlurMixture {
public:
    static FilterDescription describe();

    GPUImageGaussianSelectiveBlurFilter();

    /// In widths of the picture, 0.1875 at first: from there on all is blurred.
    float excludeCircleRadius() const { return m_excludeCircleRadius; }
    void setExcludeCircleRadius(float radius);
    /// Middle of the circle in shares of the width and height, from the top left corner; (0.5, 0.5) at first.
    CGPoint excludeCirclePoint() const;
    void setExcludeCirclePoint(CGPoint point);
    /// Width of the way from sharp to blurred within the circle, in widths of the picture, 0.09375 at first; 0: none.
    float excludeBlurSize() const { return m_excludeBlurSize; }
    void setExcludeBlurSize(float size);
    /// Height over width: what is set, or that of the picture.
    float aspectRatio() const;
    void setAspectRatio(float heightOverWidth);

private:
    class Mixture;
    explicit GPUImageGaussianSelectiveBlurFilter(const std::shared_ptr<Mixture>& mixture);

    std::shared_ptr<Mixture> m_mixture;
    float m_excludeCircleRadius = 0;
    float m_excludeBlurSize = 0;
};

} // namespace lamina
