#pragma once

#include "platform/view/UITouch.h"

#include "platform/base/CGGeometry.h"
#include "platform/view/UIPointerShape.h"
#include "platform/view/UIView.h"

#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <vector>

namespace lamina {

/// Turns what the window hears from fingers, mouse, wheel and touchpad into the gestures of a view tree.
///
/// Points in the root view's coordinates. The view that is hit when a finger comes down keeps the finger; recognisers
/// of that view and of all views above it up to the root see it before the view does. Where none of these cares, the
/// recognisers of `UIView::gestureFallback` get it. Events with unknown ids or points
/// that are not finite are ignored. What a handler destroys or removes is safe, the dispatcher and its root included.
/// Main thread.
class TouchDispatcher {
public:
    /// Not owned; once the root is gone nothing is dispatched.
    explicit TouchDispatcher(std::weak_ptr<UIView> root);
    ~TouchDispatcher();
    TouchDispatcher(const TouchDispatcher&) = delete;
    TouchDispatcher& operator=(const TouchDispatcher&) = delete;

    /// Where a finger is now.
    struct Position {
        std::int64_t id = 0;
        CGPoint point;
    };

    /// `time` in seconds on any steady clock. A finger that is down already under this id is cancelled first.
    void touchBegan(std::int64_t id, CGPoint point, double time);
    /// A finger that is down has moved.
    void touchMoved(std::int64_t id, CGPoint point, double time);
    /// Several fingers in one event: all are put in their places before anyone hears of it, so that a pinch is not
    /// taken for a drag of its first finger.
    void touchesMoved(std::span<const Position> positions, double time);
    /// A finger is lifted at `point`; the way to it counts as moved.
    void touchEnded(std::int64_t id, CGPoint point, double time);
    /// A finger is lost: views and recognisers hear that its touch is cancelled.
    void touchCancelled(std::int64_t id, double time);
    /// The same for all fingers.
    void cancelAllTouches(double time);
    /// Whether a finger is down.
    bool hasTouches() const;

    /// Keys held; sets of them are sums.
    enum Modifiers : unsigned { NoModifier = 0, Shift = 1u << 0 };
    /// Zoom factor of one step of a wheel.
    static constexpr double kWheelZoomStep = 1.1;
    /// Radians of one step of a wheel with Shift.
    static constexpr double kWheelRotationStep = 0.05235987755982988; // 3 degrees
    /// Points that a wheel step scrolls where nothing zooms.
    static constexpr double kWheelScrollStep = 40;

    /// A wheel turned by `steps` (positive: away from the user) over `point`: zooms in what takes a pinch there, else
    /// scrolls a scroll view. With Shift it turns what takes a rotation. A view that is nearer than the recogniser may
    /// take it by itself (`UIView::magnifyBy`). False when nothing there cares.
    bool wheel(CGPoint point, double steps, unsigned modifiers = NoModifier);
    /// A touchpad's pinch; the nearest pinch recogniser under the point, and those that go together with it, take it.
    bool magnify(CGPoint point, double factor);
    /// A touchpad's rotation, radians, clockwise.
    bool rotate(CGPoint point, double angle);

    /// What the mouse's pointer looks like there: as the nearest view says that would be offered a touch. An arrow
    /// where none does.
    UIPointerShape pointerShape(CGPoint point) const;

private:
    struct Touches;
    std::shared_ptr<UIView> root() const;
    std::shared_ptr<Touches> m_touches;
};

} // namespace lamina
