#include "platform/view/UIGestureRecognizer.h"
#include "platform/view/UILongPressGestureRecognizer.h"
#include "platform/view/UIPanGestureRecognizer.h"
#include "platform/view/UIView.h"

#include <algorithm>
#include <cassert>

namespace lamina {

namespace {

bool drags(const UIGestureRecognizer& recognizer)
{
    const auto* const press = dynamic_cast<const UILongPressGestureRecognizer*>(&recognizer);
    const bool atOnce = press && press->minimumPressDuration() == 0;
    return recognizer.isEnabled() && (atOnce || dynamic_cast<const UIPanGestureRecognizer*>(&recognizer));
}

} // namespace

std::optional<UIPointerShape> UIView::pointerShape() const
{
    const bool dragged = std::any_of(m_gestureRecognizers.begin(), m_gestureRecognizers.end(),
                                     [](const auto& recognizer) { return drags(*recognizer); });
    return m_pointerShape || !dragged ? m_pointerShape : UIPointerShape::OpenHand;
}

void UIView::addGestureRecognizer(std::shared_ptr<UIGestureRecognizer> recognizer)
{
    assert(recognizer);
    if (!recognizer || recognizer->view() == this)
        return;
    if (UIView* const former = recognizer->view())
        former->removeGestureRecognizer(*recognizer);
    recognizer->setView(this);
    m_gestureRecognizers.push_back(std::move(recognizer));
}

void UIView::removeGestureRecognizer(UIGestureRecognizer& recognizer)
{
    const auto isIt = [&](const auto& held) { return held.get() == &recognizer; };
    const auto place = std::find_if(m_gestureRecognizers.begin(), m_gestureRecognizers.end(), isIt);
    if (place == m_gestureRecognizers.end())
        return;
    // The action that hears of the end may let go of the recogniser, or of this view.
    const std::shared_ptr<UIGestureRecognizer> held = *place;
    const std::shared_ptr<UIView> self = weak_from_this().lock();
    held->setView(nullptr);
    std::erase(m_gestureRecognizers, held);
}

void UIView::removeAllGestureRecognizers()
{
    const std::shared_ptr<UIView> self = weak_from_this().lock();
    const auto present = m_gestureRecognizers;
    for (const auto& recognizer : present)
        removeGestureRecognizer(*recognizer);
}

void UIView::touchesBegan(const std::vector<UITouch*>&) {}

void UIView::touchesMoved(const std::vector<UITouch*>&) {}

void UIView::touchesEnded(const std::vector<UITouch*>&) {}

void UIView::touchesCancelled(const std::vector<UITouch*>&) {}

} // namespace lamina
