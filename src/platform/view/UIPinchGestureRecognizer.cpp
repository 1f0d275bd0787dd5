#include "platform/view/UIPinchGestureRecognizer.h"

#include "platform/view/UITouch.h"

#include <algorithm>
#include <cmath>

namespace lamina {

double UIPinchGestureRecognizer::fingerDistance() const
{
    const CGPoint a = touches()[0]->location;
    const CGPoint b = touches()[1]->location;
    return std::max(std::hypot(b.x - a.x, b.y - a.y), 1.0);
}

void UIPinchGestureRecognizer::setScale(double scale)
{
    if (!(scale > 0) || !std::isfinite(scale))
        return;
    m_scale = scale;
    if (numberOfTouches() == 2)
        m_startDistance = fingerDistance() / scale;
}

bool UIPinchGestureRecognizer::perform(double scale, std::optional<CGPoint> rootLocation)
{
    if (!(scale > 0) || !std::isfinite(scale))
        return false;
    return performSteps(rootLocation, [&] { setScale(scale); });
}

void UIPinchGestureRecognizer::touchesBegan(const std::vector<UITouch*>& touches)
{
    if (numberOfTouches() != 2)
        return;
    m_startDistance = fingerDistance();
    m_scale = 1;
    m_time = touches.front()->timestamp;
}

void UIPinchGestureRecognizer::touchesMoved(const std::vector<UITouch*>& touches)
{
    if (numberOfTouches() != 2)
        return;
    const double distance = fingerDistance();
    const double scale = distance / m_startDistance;
    const double time = touches.front()->timestamp;
    m_velocity = time > m_time ? (scale - m_scale) / (time - m_time) : 0;
    m_scale = scale;
    m_time = time;
    if (isActive())
        change();
    else if (std::abs(distance - m_startDistance) >= kHysteresis)
        recognize(State::Began);
}

void UIPinchGestureRecognizer::touchesEnded(const std::vector<UITouch*>&)
{
    end();
}

void UIPinchGestureRecognizer::reset()
{
    m_scale = 1;
    m_velocity = 0;
}

} // namespace lamina
