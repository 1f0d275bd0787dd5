#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilterGroup.h"
#include "platform/base/CGGeometry.h"

#include <memory>

namespace lamina {

class GPUImageGaussianBlurFilter;
class GPUImageLuminanceRangeFilter;
class GPUImageSaturationFilter;

/// Frosted glass, as panels of an interface have it behind them.
///
///   out = range(blur(saturation(in)))
///
/// by `GPUImageSaturationFilter` (0.8 at first), `GPUImageGaussianBlurFilter` (12 pixels) and
/// `GPUImageLuminanceRangeFilter` (0.6). The first two work on the picture at 1 / `downsampling` of its width and
/// height, rounded to whole pixels, at least one; the last brings it back to its size, interpolating. `downsampling`
/// makes the blur faster and, as its radius is in pixels of the small picture, as many times wider.
class GPUImageiOSBlurFilter : public GPUImageFilterGroup {
public:
    static FilterDescription describe();

    GPUImageiOSBlurFilter();

    /// In pixels of the small picture, 12 at first. From any thread; waits for the queue.
    float blurRadiusInPixels() const;
    void setBlurRadiusInPixels(float pixels);
    /// 0.8 at first; 1 leaves colours as strong as they are.
    float saturation() const;
    void setSaturation(float saturation);
    /// 4 at first; 1 and less: the blur works at the full size. In force from the next picture. From any thread; waits
    /// for the queue.
    float downsampling() const;
    void setDownsampling(float factor);
    /// 0.6 at first; 0 leaves bright and dark parts as they are.
    float rangeReductionFactor() const;
    void setRangeReductionFactor(float factor);

    void setInputSize(CGSize size, int textureIndex) override;
    /// The size that comes out.
    void forceProcessingAtSize(CGSize size) override;
    void forceProcessingAtSizeRespectingAspectRatio(CGSize size) override;

private:
    std::shared_ptr<GPUImageSaturationFilter> m_saturation;
    std::shared_ptr<GPUImageGaussianBlurFilter> m_blur;
    std::shared_ptr<GPUImageLuminanceRangeFilter> m_range;
    float m_downsampling;
    CGSize m_forcedSize;
    bool m_keepsAspectRatio = false;
};

} // namespace lamina
