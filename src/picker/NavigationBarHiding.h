#pragma once

#include "picker/ScrollDirection.h"
#include "platform/base/CGGeometry.h"
#include "platform/view/AnimatedProperty.h"

namespace lamina {

/// Height of a navigation bar, points: how far it goes up until nothing of it is left.
inline constexpr double kNavigationBarHeight = 44;

/// How a bar over content that scrolls makes way for it: it goes up with the content, fades meanwhile, and comes down
/// again with it. A screen that scrolls holds one, tells it every step, and shows its bar as it says. Main thread.
class NavigationBarHiding {
public:
    /// How far the bar has been moved, points: from 0, where it stands, to −44, where it is hidden.
    const Animated<double>& topConstraint() const { return m_topConstraint; }
    Animated<double>& topConstraint() { return m_topConstraint; }
    /// How much of it is seen, from 1 to 0.
    const Animated<double>& alpha() const { return m_alpha; }
    Animated<double>& alpha() { return m_alpha; }

    /// The content has been scrolled to `contentOffset` (zero: it stands at its top), in a view that is `viewHeight`
    /// high. While it has been pulled beyond one of its ends the bar stays as it is. `contentHeight` leaves out what
    /// can't be scrolled to.
    void scrollViewDidScroll(CGPoint contentOffset, double viewHeight, double contentHeight);
    /// The finger was lifted: a bar that is half hidden goes the rest of the way, in 0.3 s.
    void scrollViewDidEndDragging();
    /// The content has come to rest after a step of a wheel or a key, which needs no finger to be lifted and may have
    /// left out all that lies before the top: as above, and at the top the bar is there.
    void scrollViewDidComeToRest();

    const ScrollTracking& tracking() const { return m_tracking; }

private:
    void moveTo(double constant);
    void settleAt(double constant);

    Animated<double> m_topConstraint{0};
    Animated<double> m_alpha{1};
    ScrollTracking m_tracking;
};

} // namespace lamina
