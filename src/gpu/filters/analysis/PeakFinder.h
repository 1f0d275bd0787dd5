#pragma once

#include "gpu/core/GPUImageFramebuffer.h"
#include "gpu/filters/analysis/FrameReading.h"
#include "gpu/filters/edge/GPUImageThresholdedNonMaximumSuppressionFilter.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"

#include <functional>
#include <span>
#include <utility>
#include <vector>

namespace lamina {

/// A pixel that stands out.
struct Peak {
    int x = 0; ///< in pixels, from the left
    int y = 0; ///< from the top
    unsigned value = 0;
};

/// Keeps the peaks that reach a threshold, and tells where they are.
class PeakFinder : public GPUImageThresholdedNonMaximumSuppressionFilter {
public:
    explicit PeakFinder(bool packedColorspace = false)
        : GPUImageThresholdedNonMaximumSuppressionFilter(packedColorspace)
        , m_isPacked(packedColorspace)
    {
    }

    /// Gets the peaks of each frame in the order of its rows, with its size, on the video processing queue, before the
    /// targets have it. Values are as the filter compares them: 0 to 255 or, of a packed colour space, larger. They are
    /// good during the call.
    using PeaksBlock = std::function<void(std::span<const Peak> peaks, IntSize size, const CMTime& time)>;
    /// Before the first frame.
    void setPeaksBlock(PeaksBlock block) { m_peaksBlock = std::move(block); }

    void newFrameReadyAtTime(const CMTime& frameTime, int textureIndex) override;

private:
    void find(GPUImageFramebuffer& frame);

    bool m_isPacked;
    FrameReading m_reading;
    std::vector<Peak> m_peaks;
    PeaksBlock m_peaksBlock;
};

} // namespace lamina
