#pragma once

#include "gpu/filters/effect/MarkGenerator.h"

#include <utility>

namespace lamina {

/// Draws a small cross at each of some points, over the picture or, without one, over nothing.
///
/// Points are shares of the width and height: (0, 0) is the top left corner, (1, 1) the bottom right one, as detectors
/// of corners tell them. A cross fills a square of `crosshairWidth` pixels around the middle of the pixel in which its
/// point lies; its arms are 0.09 of that wide, and at least one pixel. Alpha is 1 on the crosses; green unless a colour
/// is set. A point that isn't finite is left out.
class GPUImageCrosshairGenerator : public MarkGenerator {
public:
    GPUImageCrosshairGenerator();
    static FilterDescription describe();

    /// From end to end, in pixels; 5 at first. At least 1.
    float crosshairWidth() const { return width(); }
    void setCrosshairWidth(float pixels);

    /// Points for all pictures to come; none at first.
    std::vector<CGPoint> crosshairs() const { return points(); }
    void setCrosshairs(std::vector<CGPoint> points) { setPoints(std::move(points)); }
    /// Sets the points and draws them at once without a picture, at the size that `forceProcessingAtSize` has set. From
    /// any thread; waits for the video processing queue.
    void renderCrosshairsFromArray(std::vector<CGPoint> points, const CMTime& frameTime)
    {
        renderPoints(std::move(points), frameTime);
    }
    /// The colour of the crosses: components 0 to 1.
    void setCrosshairColorRed(float red, float green, float blue) { setColorRed(red, green, blue); }

protected:
    std::vector<Mark> marksForSize(CGSize size) override;
};

} // namespace lamina
