#pragma once

#include "platform/view/UIGestureRecognizer.h"

namespace lamina {

/// Two fingers that move apart or together. Begins once their distance has changed by 4 points, ends when one is
/// lifted; further fingers are ignored.
class UIPinchGestureRecognizer : public UIGestureRecognizer {
public:
    /// Root points by which the distance has to change before it is a pinch.
    static constexpr double kHysteresis = 4;

    /// Distance of the fingers now over their distance when the second came down, or since the last setScale times that
    /// scale; 1 without fingers. Distances below 1 point count as 1.
    double scale() const { return m_scale; }
    /// Sets the scale reached so far; 1 consumes it. Not finite or not positive: ignored.
    void setScale(double scale);

    /// A whole pinch without fingers: Began at 1, Changed at `scale`, Ended. `rootLocation`: where the fingers would
    /// be, in root coordinates; by default the middle of the view. False when it did not take place.
    bool perform(double scale, std::optional<CGPoint> rootLocation = std::nullopt);

protected:
    void touchesBegan(const std::vector<UITouch*>& touches) override;
    void touchesMoved(const std::vector<UITouch*>& touches) override;
    void touchesEnded(const std::vector<UITouch*>& touches) override;
    void reset() override;
    bool acceptsTouch() const override { return numberOfTouches() < 2; }

private:
    double fingerDistance() const;

    double m_startDistance = 1; ///< that counts as scale 1
    double m_scale = 1;
};

} // namespace lamina
