#include "platform/view/UIControl.h"

#include "platform/base/CGGeometry.h"
#include "platform/view/UITouch.h"

#include <algorithm>

namespace lamina {

UIControl::UIControl(const CGRect& frame)
    : UIView(frame)
{
}

void UIControl::setEnabled(bool enabled)
{
    if (enabled == m_enabled)
        return;
    m_enabled = enabled;
    if (!enabled && m_tracking)
        stopTracking(UIControlEvents::TouchCancel);
}

void UIControl::setSelected(bool selected)
{
    m_selected = selected;
}

void UIControl::setHighlighted(bool highlighted)
{
    m_highlighted = highlighted;
}

UIControl::HandlerId UIControl::addTarget(Handler handler, UIControlEvents::Set events)
{
    m_targets.push_back({++m_lastId, events, std::move(handler)});
    return m_lastId;
}

void UIControl::removeTarget(HandlerId id)
{
    std::erase_if(m_targets, [id](const Target& target) { return target.id == id; });
}

void UIControl::sendActions(UIControlEvents::Set events)
{
    const auto self = weak_from_this().lock();
    for (const Target& target : std::vector(m_targets)) {
        const bool present = std::any_of(m_targets.begin(), m_targets.end(),
                                         [&](const Target& candidate) { return candidate.id == target.id; });
        if (present && (target.events & events) && target.handler)
            target.handler(*this);
    }
}

void UIControl::touchesBegan(const std::vector<UITouch*>&)
{
    if (!m_enabled || m_tracking)
        return;
    m_tracking = true;
    m_touchInside = true;
    setHighlighted(true);
    sendActions(UIControlEvents::TouchDown);
}

void UIControl::touchesMoved(const std::vector<UITouch*>& touches)
{
    if (!m_tracking)
        return;
    const auto self = weak_from_this().lock();
    const bool inside = pointInside(touches.front()->locationInView(this));
    const bool crossed = inside != m_touchInside;
    m_touchInside = inside;
    setHighlighted(inside);
    if (crossed)
        sendActions(inside ? UIControlEvents::TouchDragEnter : UIControlEvents::TouchDragExit);
    if (m_tracking)
        sendActions(inside ? UIControlEvents::TouchDragInside : UIControlEvents::TouchDragOutside);
}

void UIControl::touchesEnded(const std::vector<UITouch*>&)
{
    if (m_tracking)
        stopTracking(m_touchInside ? UIControlEvents::TouchUpInside : UIControlEvents::TouchUpOutside);
}

void UIControl::touchesCancelled(const std::vector<UITouch*>&)
{
    if (m_tracking)
        stopTracking(UIControlEvents::TouchCancel);
}

void UIControl::stopTracking(UIControlEvents::Set event)
{
    m_tracking = false;
    m_touchInside = false;
    setHighlighted(false);
    sendActions(event);
}

} // namespace lamina
