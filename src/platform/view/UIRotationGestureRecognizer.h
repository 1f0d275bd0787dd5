#pragma once

#include "platform/view/UIGestureRecognizer.h"

namespace lamina {

/// Two fingers that turn. Begins once the line between them has turned by 0.05 radians (about 3 degrees), ends when one
/// is lifted; further fingers are ignored.
class UIRotationGestureRecognizer : public UIGestureRecognizer {
public:
    /// Radians the line has to turn before it is a rotation.
    static constexpr double kHysteresis = 0.05;

    /// Radians, clockwise on the screen, since the second finger came down or on top of the last setRotation. Whole
    /// turns add up.
    double rotation() const { return m_rotation; }
    /// Sets the angle reached so far; 0 consumes it. Not finite: ignored.
    void setRotation(double radians);

    /// A whole rotation without fingers: Began at 0, Changed at `radians`, Ended. `rootLocation`: where the fingers
    /// would be, in root coordinates; by default the middle of the view. False when it did not take place.
    bool perform(double radians, std::optional<CGPoint> rootLocation = std::nullopt);

protected:
    void touchesBegan(const std::vector<UITouch*>& touches) override;
    void touchesMoved(const std::vector<UITouch*>& touches) override;
    void touchesEnded(const std::vector<UITouch*>& touches) override;
    void reset() override;
    bool acceptsTouch() const override { return numberOfTouches() < 2; }

private:
    double fingerAngle() const;

    double m_lastAngle = 0;
    double m_rotation = 0;
};

} // namespace lamina
