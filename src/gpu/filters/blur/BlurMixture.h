#pragma once

#include "gpu/core/GPUImageFilterGroup.h"
#include "gpu/core/GPUImageStage.h"
#include "gpu/core/GPUImageTwoInputFilter.h"
#include "gpu/filters/blur/GPUImageGaussianBlurFilter.h"

#include <memory>

namespace lamina {

/// For shaders of mixtures:
///
///   float ramp(float from, float to, float x)     smoothstep; where `to` is not above `from`, a step at `from`
extern const char* const kRampFunction;

/// A picture and its blurred copy, brought together by one stage: which of the two shows where, or how far they are
/// apart.
class BlurMixture : public GPUImageFilterGroup {
public:
    /// Of the blur, in pixels. From any thread; waits for the queue.
    float blurRadiusInPixels() const { return m_blur->blurRadiusInPixels(); }
    void setBlurRadiusInPixels(float pixels) { m_blur->setBlurRadiusInPixels(pixels); }

protected:
    /// `mixture` gets the picture in slot 0, as it lies, and the blurred copy in slot 1, upright. Both are of what
    /// `before` draws, if there is one.
    BlurMixture(std::shared_ptr<GPUImageGaussianBlurFilter> blur,
                const std::shared_ptr<GPUImageTwoInputFilter>& mixture,
                const std::shared_ptr<GPUImageStage>& before = nullptr);

private:
    std::shared_ptr<GPUImageGaussianBlurFilter> m_blur;
};

} // namespace lamina
