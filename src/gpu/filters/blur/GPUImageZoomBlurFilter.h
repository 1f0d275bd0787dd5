#pragma once

#include "gpu/core/AspectRatioFilter.h"
#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilter.h"
#include "platform/base/CGGeometry.h"
#include "platform/gl/GLHeaders.h"

namespace lamina {

/// Blurs towards a point and away from it, as a lens does that zooms while the shutter is open.
///
///   out(p) = sum over |i| <= 4 of w(|i|) in(p + i step(p)),   step(p) = (blurCenter - p) blurSize / 100
///   w      = 0.18, 0.15, 0.12, 0.09, 0.05
///
/// on all four channels, straight, as stored. Beyond the border the outermost pixels go on. `aspectRatio` plays no
/// part.
class GPUImageZoomBlurFilter : public AspectRatioFilter<GPUImageFilter> {
public:
    static FilterDescription describe();

    GPUImageZoomBlurFilter();

    /// Distance of the nine samples in hundredths of the way to the centre; 1 at first.
    float blurSize() const { return m_blurSize; }
    void setBlurSize(float size);
    /// In shares of the width and height, from the top left corner; (0.5, 0.5) at first.
    CGPoint blurCenter() const { return center(); }
    void setBlurCenter(CGPoint center) { setCenter(center); }

private:
    GLint m_blurSizeUniform;
    float m_blurSize = 0;
};

} // namespace lamina
