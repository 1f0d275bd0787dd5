#include "platform/view/TouchTargets_p.h"

#include "platform/view/UIControl.h"
#include "platform/view/UIGestureRecognizer.h"

#include <algorithm>

namespace lamina {

namespace {

using Views = std::vector<std::shared_ptr<UIView>>;

bool takesTouches(const UIView& view)
{
    const auto& recognizers = view.gestureRecognizers();
    return dynamic_cast<const UIControl*>(&view) ||
           std::any_of(recognizers.begin(), recognizers.end(), [](const auto& r) { return r->isEnabled(); });
}

/// That the nearest of the views names.
std::shared_ptr<UIView> fallbackOf(const Views& views, const UIView& root)
{
    for (const auto& view : views)
        if (UIView* const fallback = view->gestureFallback())
            return fallback->isDescendantOf(root) ? fallback->shared_from_this() : nullptr;
    return nullptr;
}

} // namespace

bool standsInControl(const UIView& view)
{
    const UIView* step = &view;
    while (step && !dynamic_cast<const UIControl*>(step))
        step = step->superview();
    return step != nullptr;
}

std::vector<std::shared_ptr<UIView>> touchTargets(UIView& hit, UIView& root)
{
    Views views;
    for (UIView* view = &hit; view; view = view == &root ? nullptr : view->superview())
        views.push_back(view->shared_from_this());
    if (std::any_of(views.begin(), views.end(), [](const auto& view) { return takesTouches(*view); }))
        return views;
    if (auto fallback = fallbackOf(views, root))
        views.push_back(std::move(fallback));
    return views;
}

std::vector<std::shared_ptr<UIView>> touchTargetsAt(CGPoint point, UIView& root)
{
    UIView* const hit = isFinite(point) ? root.hitTest(point) : nullptr;
    return hit ? touchTargets(*hit, root) : Views();
}

} // namespace lamina
