#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/blur/BlurMixture.h"

#include <memory>

namespace lamina {

/// Sharpens by what a picture has before its blurred copy, the darkroom's unsharp mask.
///
///   out.rgb = intensity in.rgb + (1 - intensity) blurred.rgb,   out.a = in.a
///
/// on straight values as stored; the result is cut to 0 to 1. `blurred` is `GPUImageGaussianBlurFilter`'s, of 4 pixels
/// at first.
class GPUImageUnsharpMaskFilter : public BlurMixture {
public:
    static FilterDescription describe();

    GPUImageUnsharpMaskFilter();

    /// 1 at first, the picture as it is; above it is sharpened, below blurred.
    float intensity() const { return m_intensity; }
    void setIntensity(float intensity);

private:
    explicit GPUImageUnsharpMaskFilter(const std::shared_ptr<GPUImageTwoInputFilter>& mixture);

    std::shared_ptr<GPUImageTwoInputFilter> m_mixture;
    float m_intensity = 0;
};

} // namespace lamina
