#include "platform/view/UITapGestureRecognizer.h"

#include "platform/base/CGGeometry.h"
#include "platform/view/UITouch.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

namespace lamina {

void UITapGestureRecognizer::setNumberOfTapsRequired(int taps)
{
    m_tapsRequired = std::max(taps, 1);
}

bool UITapGestureRecognizer::perform(std::optional<CGPoint> rootLocation)
{
    return performOnce(rootLocation);
}

void UITapGestureRecognizer::touchesBegan(const std::vector<UITouch*>& touches)
{
    m_interval.cancel();
    const CGPoint at = touches.front()->location;
    const bool astray = m_taps > 0 && std::hypot(at.x - m_firstTap.x, at.y - m_firstTap.y) > kTapDistance;
    if (astray || numberOfTouches() > 1)
        return fail();
    if (m_taps == 0)
        m_firstTap = at;
}

void UITapGestureRecognizer::touchesMoved(const std::vector<UITouch*>& touches)
{
    const bool astray = std::any_of(touches.begin(), touches.end(), [](const UITouch* touch) {
        const CGPoint start = touch->startLocation;
        return std::hypot(touch->location.x - start.x, touch->location.y - start.y) > kSlop;
    });
    if (astray)
        fail();
}

void UITapGestureRecognizer::touchesEnded(const std::vector<UITouch*>&)
{
    ++m_taps;
    if (m_taps >= m_tapsRequired) {
        recognize(State::Ended);
        return;
    }
    m_interval = DispatchTimer(DispatchQueue::main(), kTapInterval, [this] { fail(); });
}

void UITapGestureRecognizer::reset()
{
    m_interval.cancel();
    m_taps = 0;
}

} // namespace lamina
