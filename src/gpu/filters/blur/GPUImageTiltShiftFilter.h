#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/blur/BlurMixture.h"

#include <memory>

namespace lamina {

/// Blurs what is above and below a band, so that a street looks like a model of one.
///
///   out = in + (blurred - in) b
///   b   = 1 - smoothstep(topFocusLevel - focusFallOffRate, topFocusLevel, y)
///         + smoothstep(bottomFocusLevel, bottomFocusLevel + focusFallOffRate, y),   at most 1
///
/// on all four channels, straight, as stored; y runs from 0 at the picture's top to 1 at its bottom, however the input
/// lies. `blurred` is `GPUImageGaussianBlurFilter`'s, of 7 pixels at first.
class GPUImageTiltShiftFilter : public BlurMixture {
public:
    static FilterDescription describe();

    GPUImageTiltShiftFilter();

    /// Where the sharp band begins and ends, in shares of the height: 0.4 and 0.6 at first.
    float topFocusLevel() const { return m_topFocusLevel; }
    void setTopFocusLevel(float level);
    float bottomFocusLevel() const { return m_bottomFocusLevel; }
    void setBottomFocusLevel(float level);
    /// Height of the way from sharp to blurred, in shares of the height; 0.2 at first, 0: none.
    float focusFallOffRate() const { return m_focusFallOffRate; }
    void setFocusFallOffRate(float rate);

private:
    explicit GPUImageTiltShiftFilter(const std::shared_ptr<GPUImageTwoInputFilter>& mixture);

    std::shared_ptr<GPUImageTwoInputFilter> m_mixture;
    float m_topFocusLevel = 0;
    float m_bottomFocusLevel = 0;
    float m_focusFallOffRate = 0;
};

} // namespace lamina
