#include "platform/view/UIGestureRecognizer.h"

#include "platform/view/UITouch.h"
#include "platform/view/UIView.h"

#include <algorithm>

namespace lamina {

bool UIGestureRecognizerDelegate::gestureRecognizerShouldBegin(UIGestureRecognizer&)
{
    return true;
}

bool UIGestureRecognizerDelegate::gestureRecognizerShouldReceiveTouch(UIGestureRecognizer&, const UITouch&)
{
    return true;
}

bool UIGestureRecognizerDelegate::gestureRecognizer(UIGestureRecognizer&, UIGestureRecognizer&)
{
    return false;
}

UIGestureRecognizer::~UIGestureRecognizer() = default;

void UIGestureRecognizer::addAction(Action action)
{
    m_targets.push_back({{}, false, std::move(action)});
}

void UIGestureRecognizer::addTarget(std::weak_ptr<const void> owner, Action action)
{
    m_targets.push_back({std::move(owner), true, std::move(action)});
}

void UIGestureRecognizer::setEnabled(bool enabled)
{
    if (enabled == m_enabled)
        return;
    m_enabled = enabled;
    if (!enabled)
        abandon();
}

CGPoint UIGestureRecognizer::centroid() const
{
    if (m_touches.empty())
        return m_lastLocation;
    CGPoint sum;
    for (const auto& touch : m_touches) {
        sum.x += touch->location.x;
        sum.y += touch->location.y;
    }
    const auto count = static_cast<double>(m_touches.size());
    return {sum.x / count, sum.y / count};
}

CGPoint UIGestureRecognizer::locationInView(const UIView* view) const
{
    return view ? view->convertPointFromView(centroid(), nullptr) : centroid();
}

bool UIGestureRecognizer::isOver() const
{
    return m_state == State::Ended || m_state == State::Cancelled || m_state == State::Failed;
}

// ---- touches ----

void UIGestureRecognizer::prepareForTouch()
{
    if (isActive() && !m_touches.empty() && restartsWithAnotherTouch())
        restart();
}

bool UIGestureRecognizer::addTouch(const std::shared_ptr<UITouch>& touch)
{
    if (!m_enabled || !m_view || isOver() || !acceptsTouch())
        return false;
    if (const auto rules = delegate(); rules && !rules->gestureRecognizerShouldReceiveTouch(*this, *touch))
        return false;
    m_touches.push_back(touch);
    m_lastLocation = centroid();
    return true;
}

void UIGestureRecognizer::handleTouches(const std::vector<UITouch*>& touches)
{
    std::vector<UITouch*> mine;
    for (const auto& touch : m_touches)
        if (std::find(touches.begin(), touches.end(), touch.get()) != touches.end())
            mine.push_back(touch.get());
    if (mine.empty() || isOver())
        return;
    m_lastLocation = centroid();
    switch (mine.front()->phase) {
    case UITouchPhase::Began:
        return touchesBegan(mine);
    case UITouchPhase::Moved:
        return touchesMoved(mine);
    case UITouchPhase::Ended:
        return touchesEnded(mine);
    case UITouchPhase::Cancelled:
        return cancel();
    }
}

void UIGestureRecognizer::dropTouch(const UITouch& touch)
{
    const auto found =
        std::find_if(m_touches.begin(), m_touches.end(), [&](const auto& t) { return t.get() == &touch; });
    if (found == m_touches.end())
        return;
    m_touches.erase(found);
    settle();
}

void UIGestureRecognizer::touchesBegan(const std::vector<UITouch*>&) {}
void UIGestureRecognizer::touchesMoved(const std::vector<UITouch*>&) {}
void UIGestureRecognizer::touchesEnded(const std::vector<UITouch*>&) {}

// ---- the view ----

void UIGestureRecognizer::setView(UIView* view)
{
    if (view == m_view)
        return;
    const auto self = weak_from_this().lock();
    abandon();
    m_view = view;
}

void UIGestureRecognizer::viewDestroyed()
{
    m_view = nullptr;
    m_touches.clear();
    m_state = State::Possible;
    reset();
}

} // namespace lamina
