#include "platform/view/UIControl.h"

#include "platform/base/CGGeometry.h"
#include "platform/view/CALayer.h"
#include "platform/view/UIAccessibility.h"
#include "platform/view/UIPointerShape.h"
#include "platform/view/UITouch.h"

#include <algorithm>
#include <utility>

namespace lamina {

UIControl::UIControl(const CGRect& frame)
    : UIControl(frame, std::make_shared<CALayer>())
{
}

UIControl::UIControl(const CGRect& frame, std::shared_ptr<CALayer> layer)
    : UIView(frame, std::move(layer))
{
    setAccessibilityElement(true);
}

void UIControl::setEnabled(bool enabled)
{
    if (enabled == m_enabled)
        return;
    m_enabled = enabled;
    accessibilityChanged();
    if (!enabled)
        cancel();
}

void UIControl::setSelected(bool selected)
{
    m_selected = selected;
    accessibilityChanged();
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

// ---- tracking: any call may end it, or the control ----

bool UIControl::beginTracking(const UITouch&)
{
    return true;
}

bool UIControl::continueTracking(const UITouch&)
{
    return true;
}

const UITouch* UIControl::trackedOf(const std::vector<UITouch*>& touches) const
{
    const auto found = std::find_if(touches.begin(), touches.end(),
                                    [this](const UITouch* touch) { return touch->id == m_trackedTouch; });
    return m_tracking && found != touches.end() ? *found : nullptr;
}

bool UIControl::countsAsInside(const UITouch& touch) const
{
    const CGPoint point = touch.locationInView(this);
    return pointInside(point) || bounds().insetBy(-kTrackingSlack, -kTrackingSlack).contains(point);
}

void UIControl::touchesBegan(const std::vector<UITouch*>& touches)
{
    const auto self = weak_from_this().lock();
    const UITouch& touch = *touches.front();
    if (!m_enabled || m_tracking || !beginTracking(touch) || !m_enabled)
        return;
    m_tracking = m_touchInside = true;
    m_trackedTouch = touch.id;
    setHighlighted(true);
    sendActions(UIControlEvents::TouchDown);
}

void UIControl::touchesMoved(const std::vector<UITouch*>& touches)
{
    const UITouch* const touch = trackedOf(touches);
    if (!touch)
        return;
    const auto self = weak_from_this().lock();
    const bool inside = countsAsInside(*touch);
    const bool crossed = std::exchange(m_touchInside, inside) != inside;
    if (crossed)
        setHighlighted(inside);
    const bool goesOn = continueTracking(*touch);
    if (!goesOn && m_tracking)
        return stopTracking();
    if (crossed && m_tracking)
        sendActions(inside ? UIControlEvents::TouchDragEnter : UIControlEvents::TouchDragExit);
    if (m_tracking)
        sendActions(inside ? UIControlEvents::TouchDragInside : UIControlEvents::TouchDragOutside);
}

void UIControl::touchesEnded(const std::vector<UITouch*>& touches)
{
    const UITouch* const touch = trackedOf(touches);
    if (!touch)
        return;
    const auto self = weak_from_this().lock();
    endTracking(*touch);
    if (!m_tracking)
        return;
    const bool inside = m_touchInside;
    stopTracking();
    sendActions(inside ? UIControlEvents::TouchUpInside : UIControlEvents::TouchUpOutside);
}

void UIControl::touchesCancelled(const std::vector<UITouch*>& touches)
{
    if (trackedOf(touches))
        cancel();
}

void UIControl::stopTracking()
{
    m_tracking = m_touchInside = false;
    setHighlighted(false);
}

void UIControl::cancel()
{
    if (!m_tracking)
        return;
    const auto self = weak_from_this().lock();
    stopTracking();
    cancelTracking();
    sendActions(UIControlEvents::TouchCancel);
}

// ---- what it is to pointers and to assistive technology ----

std::optional<UIPointerShape> UIControl::pointerShape() const
{
    const auto shape = UIView::pointerShape();
    return shape ? shape : UIPointerShape::Arrow;
}

UIAccessibilityTraits::Set UIControl::accessibilityTraits() const
{
    using Traits = UIAccessibilityTraits;
    return UIView::accessibilityTraits() | (m_selected ? Traits::Selected : Traits::None) |
           (m_enabled ? Traits::None : Traits::NotEnabled);
}

bool UIControl::accessibilityActivate()
{
    if (m_enabled)
        sendActions(UIControlEvents::TouchUpInside);
    return m_enabled;
}

} // namespace lamina
