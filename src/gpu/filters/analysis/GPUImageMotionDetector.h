#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilterGroup.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"

#include <functional>
#include <memory>

namespace lamina {

class GPUImageAverageColor;
class GPUImageLowPassFilter;

/// Finds what has moved in a stream: where it is, and how much of the picture it is.
///
/// A pixel has moved where its colour is 0.2 or more (as a distance of red, green and blue) from that of
/// `GPUImageLowPassFilter`, which holds what was before. It becomes (x, y, 1, 1), and (0, 0, 0, 0) where nothing moved;
/// x and y are its place in the incoming frame, from 0 to 1. `GPUImageAverageColor` makes one pixel of these:
///
///   intensity = alpha,   centroid = (red, green) / alpha
///
/// In the first frame, and so in a single picture, nothing has moved.
class GPUImageMotionDetector : public GPUImageFilterGroup {
public:
    GPUImageMotionDetector();
    static FilterDescription describe();

    /// Share of the past in what is compared with, from 0 to 1; 0.5 at first.
    float lowPassFilterStrength() const;
    void setLowPassFilterStrength(float strength);

    /// Gets the middle of what moved, in shares of the width and the height, (0.5, 0.5) where nothing did, the share of
    /// the picture that it is, and the time of each frame; on the video processing queue, before the targets have it.
    /// It must not wait for the main queue.
    using MotionDetectionBlock = std::function<void(CGPoint centroid, double intensity, CMTime time)>;
    /// From any thread; in force from the next frame.
    void setMotionDetectionBlock(MotionDetectionBlock block);

private:
    std::shared_ptr<GPUImageLowPassFilter> m_lowPass;
    std::shared_ptr<GPUImageAverageColor> m_average;
};

} // namespace lamina
