#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilterGroup.h"

#include <atomic>
#include <memory>

namespace lamina {

/// Black and white, parted at the picture's own average brightness.
///
///   out.rgb = 1 where Y >= thresholdMultiplier luminosity, else 0,   Y = 0.2125 red + 0.7154 green + 0.0721 blue
///   out.a = in.a
///
/// The luminosity is that of `GPUImageLuminosity`, of every frame anew. Below 1 more of the picture is white.
class GPUImageAverageLuminanceThresholdFilter : public GPUImageFilterGroup {
public:
    GPUImageAverageLuminanceThresholdFilter();
    static FilterDescription describe();

    /// How many times the average is the threshold, 1 at first.
    float thresholdMultiplier() const { return *m_thresholdMultiplier; }
    void setThresholdMultiplier(float multiplier) { *m_thresholdMultiplier = multiplier; }

private:
    std::shared_ptr<std::atomic<float>> m_thresholdMultiplier;
};

} // namespace lamina
