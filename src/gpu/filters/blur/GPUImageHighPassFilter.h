#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilterGroup.h"
#include "gpu/filters/blur/GPUImageLowPassFilter.h"

#include <memory>

namespace lamina {

/// Shows what changes in a stream: how far a frame is from what the low pass makes of it.
///
///   out(t).rgb = |in(t) - low(t)|.rgb,   out(t).a = in(t).a,   out(0) = in(0)
///
/// on straight values as stored; `low` and its lag of two frames are `GPUImageLowPassFilter`'s. The first frame has no
/// past to differ from and passes as it is, and so does a single picture.
class GPUImageHighPassFilter : public GPUImageFilterGroup {
public:
    static FilterDescription describe();

    GPUImageHighPassFilter();

    /// Share of the past in what is taken away, from 0 to 1; 0.5 at first. The larger, the longer a change shows.
    float filterStrength() const { return m_lowPass->filterStrength(); }
    void setFilterStrength(float strength) { m_lowPass->setFilterStrength(strength); }

    void newFrameReadyAtTime(const CMTime& frameTime, int textureIndex) override;

private:
    std::shared_ptr<GPUImageLowPassFilter> m_lowPass;
    std::shared_ptr<GPUImageStage> m_difference;
};

} // namespace lamina
