#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/FilterResults.h"
#include "gpu/core/GPUImageFilterGroup.h"
#include "gpu/filters/analysis/PeakPairs.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <vector>

namespace lamina {

class GPUImageCannyEdgeDetectionFilter;
class PeakFinder;

/// Finds straight lines. The picture that comes out is the lines' space, black but for a point for each line.
///
/// In line: `GPUImageCannyEdgeDetectionFilter`, `GPUImageParallelCoordinateLineTransformFilter`, and
/// `GPUImageThresholdedNonMaximumSuppressionFilter`; the latter two in their packed form where the device's fragment
/// shaders read what they draw over. Edges are looked for in a picture of at most 1024 pixels on the longer side, to
/// which larger ones are reduced.
///
/// Places are x and y from -1 to 1, rightwards and downwards, and a line is y = slope x + intercept. That of an upright
/// line is infinite, and the intercept is its x. A stripe has two edges, and so two lines.
class GPUImageHoughTransformLineDetector : public GPUImageFilterGroup {
public:
    /// By the device: packed where it can.
    GPUImageHoughTransformLineDetector();
    explicit GPUImageHoughTransformLineDetector(bool packedColorspace);
    static FilterDescription describe();

    /// The steepness from which an edge is sure, 0.4 at first: `upperThreshold` of the edge finder.
    float edgeThreshold() const;
    void setEdgeThreshold(float threshold);
    /// The least votes of a line, in units of 255, 0.12 at first: of an edge as long as the picture's longer side,
    /// about its length as a share of that. 0 keeps every peak.
    float lineDetectionThreshold() const;
    void setLineDetectionThreshold(float threshold);

    /// Room for the lines that the block is told: slope and intercept of each.
    static constexpr std::size_t kLineRoom = PeakPairs::kRoom;
    /// Of more lines, the last takes the place of the one before.
    static constexpr unsigned kMostLines = PeakPairs::kMost;
    /// Gets what was found in each frame, in the order of the result's rows, on the video processing queue, before the
    /// targets have the frame: an array of `kLineRoom` numbers that is good during the call, and how many lines stand
    /// in it. It must not wait for the main queue.
    using LinesDetectedBlock = std::function<void(std::span<const float> lineArray, unsigned count, CMTime time)>;
    /// From any thread; in force from the next frame.
    void setLinesDetectedBlock(LinesDetectedBlock block);

    /// A line from end to end of the picture.
    struct Line {
        double slope = 0;
        double intercept = 0;
        CGPoint start; ///< where it enters the picture, in shares of the width and the height
        CGPoint end;
        unsigned votes = 0;
    };
    /// Gets all lines of each frame that cross the picture, those of most votes first; as above.
    using LinesBlock = std::function<void(const std::vector<Line>& lines, CMTime time)>;
    void setLinesBlock(LinesBlock block);

    void setInputSize(CGSize size, int textureIndex) override;

private:
    static FilterReporting reporting();
    /// Who is told, and of what.
    struct Telling;

    std::shared_ptr<GPUImageCannyEdgeDetectionFilter> m_edges;
    std::shared_ptr<PeakFinder> m_peaks;
    std::shared_ptr<Telling> m_telling;
    bool m_isReducing = false;
};

} // namespace lamina
