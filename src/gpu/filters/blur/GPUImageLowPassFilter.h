#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilterGroup.h"

#include <memory>

namespace lamina {

/// Evens a stream out over time: what stays shows, what moves leaves a trail.
///
///   out(t) = (1 - filterStrength) in(t) + filterStrength out(t - 2),   out(1) with out(0),   out(0) = in(0)
///
/// on all four channels, straight, as stored. The lag is two frames, one in the buffer that hands past frames back and
/// one in the slot of the blend where they wait. The first frame after a source has been added or has gone passes as it
/// is, and so does a single picture.
///
/// By `GPUImageDissolveBlendFilter`, whose overlay is its own past by `GPUImageBuffer`.
class GPUImageLowPassFilter : public GPUImageFilterGroup {
public:
    static FilterDescription describe();

    GPUImageLowPassFilter();

    /// Share of the past, from 0 to 1; 0.5 at first.
    float filterStrength() const;
    void setFilterStrength(float strength);

    /// Whether the next frame meets a past. On the queue.
    bool hasPast() const;

private:
    class Feedback;
    std::shared_ptr<Feedback> m_feedback;
};

} // namespace lamina
