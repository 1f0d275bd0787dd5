#pragma once

#include "gpu/filters/effect/MarkGenerator.h"

#include <utility>

namespace lamina {

/// Draws straight lines from border to border, over the picture or, without one, over nothing.
///
/// A line is a point of slope and intercept, y = slope x + intercept, where x runs from -1 at the left border to 1 at
/// the right one and y from -1 at the top to 1 at the bottom. An infinite slope, or one beyond `kVerticalSlope`, either
/// way, stands for the vertical line at x = intercept: as `GPUImageHoughTransformLineDetector` tells lines. What misses
/// the picture or is no number is left out. Alpha is 1 on the lines; green unless a colour is set.
class GPUImageLineGenerator : public MarkGenerator {
public:
    static constexpr double kVerticalSlope = 100'000;

    GPUImageLineGenerator();
    static FilterDescription describe();

    /// In pixels, across the line; 1 at first, and at least.
    float lineWidth() const { return width(); }
    void setLineWidth(float pixels) { setWidth(pixels); }

    /// Lines for all pictures to come; none at first.
    std::vector<CGPoint> lines() const { return points(); }
    void setLines(std::vector<CGPoint> slopesAndIntercepts) { setPoints(std::move(slopesAndIntercepts)); }
    /// Sets the lines and draws them at once without a picture, at the size that `forceProcessingAtSize` has set. From
    /// any thread; waits for the video processing queue.
    void renderLinesFromArray(std::vector<CGPoint> slopesAndIntercepts, const CMTime& frameTime)
    {
        renderPoints(std::move(slopesAndIntercepts), frameTime);
    }
    /// The colour of the lines: components 0 to 1.
    void setLineColorRed(float red, float green, float blue) { setColorRed(red, green, blue); }

protected:
    std::vector<Mark> marksForSize(CGSize size) override;
};

} // namespace lamina
