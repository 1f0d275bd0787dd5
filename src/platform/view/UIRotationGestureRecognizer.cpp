#include "platform/view/UIRotationGestureRecognizer.h"

#include "platform/base/CGGeometry.h"
#include "platform/view/UITouch.h"

#include <cmath>
#include <numbers>
#include <optional>
#include <vector>

namespace lamina {

/// Of the line from the first finger to the second; the last one known while they stand at one point.
double UIRotationGestureRecognizer::fingerAngle() const
{
    const CGPoint a = touches()[0]->location;
    const CGPoint b = touches()[1]->location;
    if (std::hypot(b.x - a.x, b.y - a.y) < 1)
        return m_lastAngle;
    return std::atan2(b.y - a.y, b.x - a.x);
}

void UIRotationGestureRecognizer::setRotation(double radians)
{
    if (std::isfinite(radians))
        m_rotation = radians;
}

bool UIRotationGestureRecognizer::perform(double radians, std::optional<CGPoint> rootLocation)
{
    if (!std::isfinite(radians))
        return false;
    return performSteps(rootLocation, [&] { setRotation(radians); });
}

void UIRotationGestureRecognizer::touchesBegan(const std::vector<UITouch*>&)
{
    if (numberOfTouches() != 2)
        return;
    m_lastAngle = fingerAngle();
    m_rotation = 0;
}

void UIRotationGestureRecognizer::touchesMoved(const std::vector<UITouch*>&)
{
    if (numberOfTouches() != 2)
        return;
    const double angle = fingerAngle();
    // The short way round: a finger that crosses the angle's seam has not made a turn.
    m_rotation += std::remainder(angle - m_lastAngle, 2 * std::numbers::pi);
    m_lastAngle = angle;
    if (isActive())
        change();
    else if (std::abs(m_rotation) >= kHysteresis)
        recognize(State::Began);
}

void UIRotationGestureRecognizer::touchesEnded(const std::vector<UITouch*>&)
{
    end();
}

void UIRotationGestureRecognizer::reset()
{
    m_rotation = 0;
}

} // namespace lamina
