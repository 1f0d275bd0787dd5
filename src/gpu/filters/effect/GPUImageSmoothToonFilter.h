#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilterGroup.h"
#include "gpu/filters/blur/GPUImageGaussianBlurFilter.h"
#include "gpu/filters/edge/GPUImageToonFilter.h"

#include <memory>

namespace lamina {

/// A cartoon of few shades and black lines that small detail doesn't disturb: `GPUImageGaussianBlurFilter`, then
/// `GPUImageToonFilter`. Properties are those of the two.
class GPUImageSmoothToonFilter : public GPUImageFilterGroup {
public:
    GPUImageSmoothToonFilter();
    static FilterDescription describe();

    /// 2 pixels at first.
    float blurRadiusInPixels() const { return m_blur->blurRadiusInPixels(); }
    void setBlurRadiusInPixels(float pixels) { m_blur->setBlurRadiusInPixels(pixels); }
    /// 0.2 at first.
    float threshold() const { return m_toon->threshold(); }
    void setThreshold(float threshold) { m_toon->setThreshold(threshold); }
    /// 10 at first.
    float quantizationLevels() const { return m_toon->quantizationLevels(); }
    void setQuantizationLevels(float levels) { m_toon->setQuantizationLevels(levels); }
    /// One pixel at first.
    float texelWidth() const { return m_toon->texelWidth(); }
    void setTexelWidth(float share) { m_toon->setTexelWidth(share); }
    float texelHeight() const { return m_toon->texelHeight(); }
    void setTexelHeight(float share) { m_toon->setTexelHeight(share); }

private:
    std::shared_ptr<GPUImageGaussianBlurFilter> m_blur = std::make_shared<GPUImageGaussianBlurFilter>();
    std::shared_ptr<GPUImageToonFilter> m_toon = std::make_shared<GPUImageToonFilter>();
};

} // namespace lamina
