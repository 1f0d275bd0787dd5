#include "picker/NavigationBarHiding.h"

#include "platform/view/UIViewAnimation.h"

#include <algorithm>

namespace lamina {

namespace {

constexpr double kSettling = 0.3; ///< seconds

} // namespace

void NavigationBarHiding::scrollViewDidScroll(CGPoint contentOffset, double viewHeight, double contentHeight)
{
    if (contentOffset.y > 0 && contentOffset.y + viewHeight < contentHeight - 1)
        moveTo(m_topConstraint.value() - (contentOffset.y - m_tracking.lastContentOffset.y));
    yms_scrollViewDidScroll(m_tracking, contentOffset);
}

void NavigationBarHiding::scrollViewDidEndDragging()
{
    if (m_topConstraint.value() <= -kNavigationBarHeight || m_topConstraint.value() >= 0)
        return;
    if (m_tracking.scrollDirection == ScrollDirection::Up)
        settleAt(-kNavigationBarHeight);
    else if (m_tracking.scrollDirection == ScrollDirection::Down)
        settleAt(0);
}

void NavigationBarHiding::scrollViewDidComeToRest()
{
    if (m_tracking.lastContentOffset.y > 0)
        scrollViewDidEndDragging();
    else if (m_topConstraint.value() < 0)
        settleAt(0);
}

void NavigationBarHiding::moveTo(double constant)
{
    m_topConstraint = std::clamp(constant, -kNavigationBarHeight, 0.0);
    m_alpha = m_topConstraint.value() / kNavigationBarHeight + 1;
}

void NavigationBarHiding::settleAt(double constant)
{
    animate(kSettling, 0, {}, [&] { moveTo(constant); });
}

} // namespace lamina
