#include "platform/view/UILongPressGestureRecognizer.h"

#include "platform/base/CGGeometry.h"
#include "platform/view/UITouch.h"

#include <cmath>
#include <vector>

namespace lamina {

void UILongPressGestureRecognizer::setMinimumPressDuration(double seconds)
{
    m_minimumPressDuration = seconds > 0 ? seconds : 0;
}

void UILongPressGestureRecognizer::touchesBegan(const std::vector<UITouch*>&)
{
    if (numberOfTouches() > 1)
        return fail();
    if (m_minimumPressDuration == 0) {
        recognize(State::Began);
        return;
    }
    m_timer = DispatchTimer(DispatchQueue::main(), m_minimumPressDuration, [this] { recognize(State::Began); });
}

void UILongPressGestureRecognizer::touchesMoved(const std::vector<UITouch*>& touches)
{
    if (isActive())
        return change();
    const UITouch& touch = *touches.front();
    const CGPoint start = touch.startLocation;
    if (std::hypot(touch.location.x - start.x, touch.location.y - start.y) > kSlop)
        fail();
}

void UILongPressGestureRecognizer::touchesEnded(const std::vector<UITouch*>&)
{
    m_timer.cancel();
    if (isActive())
        end();
    else
        fail();
}

void UILongPressGestureRecognizer::reset()
{
    m_timer.cancel();
}

} // namespace lamina
