// Wheels and touchpads: gestures that come whole, without fingers. And the pointer that hovers.

#include "platform/view/TouchDispatcher.h"

#include "platform/view/TouchTargets_p.h"
#include "platform/view/UIPanGestureRecognizer.h"
#include "platform/view/UIPinchGestureRecognizer.h"
#include "platform/view/UIRotationGestureRecognizer.h"
#include "platform/view/UIScrollView.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <vector>

namespace lamina {

namespace {

/// Lets the nearest recogniser of a kind make the gesture, and those that go together with it, or the nearest view that
/// does it itself.
template <class Kind, class Perform>
bool performAt(UIView& root, CGPoint point, const Perform& perform, const std::function<bool(UIView&)>& performItself)
{
    std::vector<std::shared_ptr<Kind>> taken;
    for (const auto& view : touchTargetsAt(point, root)) {
        for (const auto& recognizer : std::vector(view->gestureRecognizers())) {
            const auto candidate = std::dynamic_pointer_cast<Kind>(recognizer);
            const bool free = candidate && std::all_of(taken.begin(), taken.end(), [&](const auto& other) {
                                  return candidate->recognizesSimultaneouslyWith(*other);
                              });
            if (free && perform(*candidate))
                taken.push_back(candidate);
        }
        if (taken.empty() && performItself(*view))
            return true;
    }
    return !taken.empty();
}

/// As a pan would, along the axis that scrolls.
bool scrollAt(UIView& root, CGPoint point, double distance)
{
    for (const auto& view : touchTargetsAt(point, root)) {
        const auto scrollView = std::dynamic_pointer_cast<UIScrollView>(view);
        if (!scrollView || !scrollView->canScroll())
            continue;
        const CGPoint by = scrollView->canScrollDown() ? CGPoint{0, distance} : CGPoint{distance, 0};
        if (scrollView->panGestureRecognizer().perform(by, scrollView.get()))
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
    return view && scrollAt(*view, point, steps * kWheelScrollStep);
}

bool TouchDispatcher::magnify(CGPoint point, double factor)
{
    const auto view = root();
    if (!view || !isFinite(point) || !std::isfinite(factor) || !(factor > 0))
        return false;
    const CGPoint location = view->convertPointToView(point, nullptr);
    return performAt<UIPinchGestureRecognizer>(
        *view, point, [&](auto& pinch) { return pinch.perform(factor, location); },
        [&](UIView& target) { return target.magnifyBy(factor); });
}

bool TouchDispatcher::rotate(CGPoint point, double angle)
{
    const auto view = root();
    if (!view || !isFinite(point) || !std::isfinite(angle))
        return false;
    const CGPoint location = view->convertPointToView(point, nullptr);
    return performAt<UIRotationGestureRecognizer>(
        *view, point, [&](auto& rotation) { return rotation.perform(angle, location); },
        [&](UIView& target) { return target.rotateBy(angle); });
}

UIPointerShape TouchDispatcher::pointerShape(CGPoint point) const
{
    const auto view = root();
    if (!view)
        return UIPointerShape::Arrow;
    for (const auto& target : touchTargetsAt(point, *view))
        if (const auto shape = target->pointerShape())
            return *shape;
    return UIPointerShape::Arrow;
}

} // namespace lamina
