#include "platform/view/UIPinchGestureRecognizer.h"

#include "platform/base/CGGeometry.h"
#include "platform/view/UITouch.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

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

void UIPinchGestureRecognizer::touchesBegan(const std::vector<UITouch*>&)
{
    if (numberOfTouches() != 2)
        return;
    m_startDistance = fingerDistance();
    m_scale = 1;
}

void UIPinchGestureRecognizer::touchesMoved(const std::vector<UITouch*>&)
{
    if (numberOfTouches() != 2)
        return;
    const double distance = fingerDistance();
    m_scale = distance / m_startDistance;
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
}

} // namespace lamina
