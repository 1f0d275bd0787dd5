// Wheels and touchpads: gestures that come whole, without fingers.

#include "platform/view/TouchDispatcher.h"

#include "platform/view/UIPinchGestureRecognizer.h"
#include "platform/view/UIRotationGestureRecognizer.h"
#include "platform/view/UIScrollView.h"

#include <algorithm>
#include <cmath>

namespace lamina {

namespace {

/// The views under a point, the nearest first.
std::vector<std::shared_ptr<UIView>> viewsAt(UIView& root, CGPoint point)
{
    std::vector<std::shared_ptr<UIView>> views;
    for (UIView* view = root.hitTest(point); view; view = view == &root ? nullptr : view->superview())
        views.push_back(view->shared_from_this());
    return views;
}

/// Lets the nearest recogniser of a kind make the gesture, and those that go together with it.
template <class Kind, class Perform>
bool performAt(UIView& root, CGPoint point, const Perform& perform)
{
    std::vector<std::shared_ptr<Kind>> taken;
    for (const auto& view : viewsAt(root, point)) {
        for (const auto& recognizer : std::vector(view->gestureRecognizers())) {
            const auto candidate = std::dynamic_pointer_cast<Kind>(recognizer);
            const bool free = candidate && std::all_of(taken.begin(), taken.end(), [&](const auto& other) {
                                  return candidate->recognizesSimultaneouslyWith(*other);
                              });
            if (free && perform(*candidate))
                taken.push_back(candidate);
        }
    }
    return !taken.empty();
}

bool scrollAt(UIView& root, CGPoint point, double distance)
{
    for (const auto& view : viewsAt(root, point)) {
        const auto scrollView = std::dynamic_pointer_cast<UIScrollView>(view);
        if (!scrollView)
            continue;
        const CGPoint range = scrollView->maximumContentOffset();
        CGPoint offset = scrollView->contentOffset();
        if (range.y > 0)
            offset.y -= distance;
        else if (range.x > 0)
            offset.x -= distance;
        else
            continue;
        scrollView->setContentOffset(offset);
        return true;
    }
    return false;
}

} // namespace

bool TouchDispatcher::wheel(CGPoint point, double steps, unsigned modifiers)
{
    if (!std::isfinite(steps) || steps == 0)
        return false;
    if (modifiers & Shift)
        return rotate(point, steps * kWheelRotationStep);
    if (magnify(point, std::pow(kWheelZoomStep, steps)))
        return true;
    const auto view = root();
    return view && isFinite(point) && scrollAt(*view, point, steps * kWheelScrollStep);
}

bool TouchDispatcher::magnify(CGPoint point, double factor)
{
    const auto view = root();
    if (!view || !isFinite(point) || !std::isfinite(factor) || !(factor > 0))
        return false;
    const CGPoint location = view->convertPointToView(point, nullptr);
    return performAt<UIPinchGestureRecognizer>(*view, point,
                                               [&](auto& pinch) { return pinch.perform(factor, location); });
}

bool TouchDispatcher::rotate(CGPoint point, double angle)
{
    const auto view = root();
    if (!view || !isFinite(point) || !std::isfinite(angle))
        return false;
    const CGPoint location = view->convertPointToView(point, nullptr);
    return performAt<UIRotationGestureRecognizer>(*view, point,
                                                  [&](auto& rotation) { return rotation.perform(angle, location); });
}

} // namespace lamina
