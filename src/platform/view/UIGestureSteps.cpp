// How a gesture goes from state to state. Actions may do anything, so what is touched after a call is looked at anew.

#include "platform/view/UIGestureRecognizer.h"
#include "platform/view/UITouch.h"
#include "platform/view/UIView.h"

namespace lamina {

bool UIGestureRecognizer::recognize(State state)
{
    if (m_state != State::Possible)
        return false;
    const auto self = weak_from_this().lock();
    if (!mayBegin()) {
        fail();
        return false;
    }
    if (m_state != State::Possible || !m_view || !m_enabled)
        return false; // the delegate's answer was to take the recogniser away
    m_state = state;
    for (const auto& rival : rivals())
        if (rival->m_state == State::Possible && !recognizesSimultaneouslyWith(*rival))
            rival->fail();
    for (const auto& touch : std::vector(m_touches))
        touch->cancelInView();
    if (m_state == state)
        fire();
    const bool there = m_state == state;
    if (isOver())
        settle();
    return there;
}

void UIGestureRecognizer::change()
{
    if (!isActive())
        return;
    m_state = State::Changed;
    fire();
}

void UIGestureRecognizer::end()
{
    if (!isActive())
        return;
    const auto self = weak_from_this().lock();
    m_state = State::Ended;
    fire();
    settle();
}

void UIGestureRecognizer::cancel()
{
    if (!isActive())
        return fail();
    const auto self = weak_from_this().lock();
    m_state = State::Cancelled;
    fire();
    settle();
}

void UIGestureRecognizer::fail()
{
    if (m_state != State::Possible)
        return;
    m_state = State::Failed;
    settle();
}

/// Back to rest when nothing holds the gesture any more.
void UIGestureRecognizer::settle()
{
    if (!m_touches.empty())
        return;
    if (isActive())
        return cancel();
    if (m_state == State::Possible) {
        if (!awaitsMoreTouches())
            fail();
        return;
    }
    m_state = State::Possible;
    reset();
}

/// Ends the gesture and keeps the fingers; the others on them may try again too.
void UIGestureRecognizer::restart()
{
    const auto self = weak_from_this().lock();
    end();
    if (m_state != State::Ended)
        return; // the action has let the fingers go
    for (const auto& rival : rivals()) {
        if (rival->m_state != State::Failed)
            continue;
        rival->m_state = State::Possible;
        rival->reset();
    }
    m_state = State::Possible;
    reset();
}

/// Ends whatever is going on and lets the fingers go.
void UIGestureRecognizer::abandon()
{
    const auto self = weak_from_this().lock();
    const bool idle = m_touches.empty() && m_state == State::Possible && !awaitsMoreTouches();
    if (idle)
        return;
    if (isActive()) {
        m_state = State::Cancelled;
        fire();
    }
    m_touches.clear();
    fail();
    settle();
}

void UIGestureRecognizer::fire()
{
    const auto self = weak_from_this().lock();
    const State state = m_state;
    for (const Target& target : std::vector(m_targets)) {
        if (m_state != state || !m_view)
            return; // an action before has ended the gesture; everybody has been told
        const auto owner = target.owner.lock();
        if (!target.owned || owner)
            target.action(*this);
    }
}

bool UIGestureRecognizer::enterWithoutTouches(State state, std::optional<CGPoint> rootLocation)
{
    if (!m_enabled || !m_view || !m_touches.empty())
        return false;
    const CGRect bounds = m_view->bounds();
    const CGPoint middle{bounds.midX(), bounds.midY()};
    m_lastLocation = rootLocation ? *rootLocation : m_view->convertPointToView(middle, nullptr);
    return recognize(state);
}

bool UIGestureRecognizer::performSteps(std::optional<CGPoint> rootLocation, const std::function<void()>& update)
{
    const auto self = weak_from_this().lock();
    if (!enterWithoutTouches(State::Began, rootLocation))
        return false;
    update();
    change();
    end();
    return true;
}

bool UIGestureRecognizer::performOnce(std::optional<CGPoint> rootLocation)
{
    return enterWithoutTouches(State::Ended, rootLocation);
}

} // namespace lamina
