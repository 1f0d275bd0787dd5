#pragma once

#include "platform/base/CGGeometry.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace lamina {

class UIGestureRecognizer;
class UIView;

/// What a finger has just done.
enum class UITouchPhase { Began, Moved, Ended, Cancelled };

/// One finger (or the pressed mouse) from the moment it comes down until it is lifted. Made and changed by
/// TouchDispatcher alone; recognisers and views read it while they handle it. Main thread.
struct UITouch {
    std::int64_t id = 0; ///< whatever the window tells fingers apart by
    UITouchPhase phase = UITouchPhase::Began;
    CGPoint location;           ///< points, in the coordinates of the topmost view of the tree
    CGPoint startLocation;      ///< where it came down
    CGPoint previousLocation;   ///< where it was before the last event; the same as `location` at first
    double timestamp = 0;       ///< seconds, of the last event
    std::weak_ptr<UIView> view; ///< what was hit when the finger came down; stays so however far it moves

    /// Those that were handed this touch, the nearest view's first.
    std::vector<std::weak_ptr<UIGestureRecognizer>> gestureRecognizers;
    /// False once a recogniser took the touch away from the view, or where the view takes one finger only.
    bool reachesView = true;

    /// In the coordinates of `view`; null: those of the topmost view.
    CGPoint locationInView(const UIView* inView) const;

    /// Tells the view that its touch is lost, once; later events of the touch no longer reach it.
    void cancelInView();
};

} // namespace lamina
