// Which of several recognisers on the same fingers goes first.

#include "platform/view/UIGestureRecognizer.h"
#include "platform/view/UITouch.h"

#include <algorithm>

namespace lamina {

bool UIGestureRecognizer::recognizesSimultaneouslyWith(UIGestureRecognizer& other)
{
    if (const auto rules = delegate(); rules && rules->gestureRecognizer(*this, other))
        return true;
    const auto rules = other.delegate();
    return rules && rules->gestureRecognizer(other, *this);
}

/// The others that follow one of these fingers, the nearest first.
std::vector<std::shared_ptr<UIGestureRecognizer>> UIGestureRecognizer::rivals() const
{
    std::vector<std::shared_ptr<UIGestureRecognizer>> found;
    for (const auto& touch : m_touches) {
        for (const auto& weak : touch->gestureRecognizers) {
            const auto other = weak.lock();
            if (other && other.get() != this && tracksAnyOf(*other) &&
                std::find(found.begin(), found.end(), other) == found.end())
                found.push_back(other);
        }
    }
    return found;
}

bool UIGestureRecognizer::tracksAnyOf(const UIGestureRecognizer& other) const
{
    return std::any_of(m_touches.begin(), m_touches.end(), [&](const auto& touch) {
        return std::find(other.m_touches.begin(), other.m_touches.end(), touch) != other.m_touches.end();
    });
}

bool UIGestureRecognizer::mayBegin()
{
    if (const auto rules = delegate(); rules && !rules->gestureRecognizerShouldBegin(*this))
        return false;
    const auto others = rivals();
    return std::none_of(others.begin(), others.end(), [&](const auto& rival) {
        const bool goesAhead = rival->isActive() || rival->m_state == State::Ended;
        return goesAhead && !recognizesSimultaneouslyWith(*rival);
    });
}

} // namespace lamina
