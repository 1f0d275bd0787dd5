#include "platform/view/TouchDispatcher.h"

#include "platform/view/TouchTargets_p.h"
#include "platform/view/UIControl.h"
#include "platform/view/UIGestureRecognizer.h"
#include "platform/view/UITapGestureRecognizer.h"
#include "platform/view/UIView.h"

#include <algorithm>
#include <cmath>

namespace lamina {

namespace {

using Touch = std::shared_ptr<UITouch>;
using Recognizer = std::shared_ptr<UIGestureRecognizer>;

/// A control keeps taps on it from the views above it, so that a button in a tappable view is a button.
bool isKeptByControl(const UIView& hit, const UIGestureRecognizer& recognizer)
{
    if (!dynamic_cast<const UITapGestureRecognizer*>(&recognizer))
        return false;
    for (const UIView* view = &hit; view && view != recognizer.view(); view = view->superview())
        if (dynamic_cast<const UIControl*>(view))
            return true;
    return false;
}

/// The recognisers that are offered a finger, those of the nearest views first.
std::vector<Recognizer> candidatesFor(UIView& hit, UIView& root)
{
    std::vector<Recognizer> candidates;
    for (const auto& view : touchTargets(hit, root))
        for (const Recognizer& recognizer : view->gestureRecognizers())
            if (!isKeptByControl(hit, *recognizer))
                candidates.push_back(recognizer);
    return candidates;
}

int depth(const UIView* view)
{
    int count = 0;
    for (; view; view = view->superview())
        ++count;
    return count;
}

/// Everyone who follows one of the touches, those of the nearest views first.
std::vector<Recognizer> followers(const std::vector<Touch>& touches)
{
    std::vector<Recognizer> found;
    for (const Touch& touch : touches) {
        for (const auto& weak : touch->gestureRecognizers) {
            const Recognizer recognizer = weak.lock();
            if (recognizer && std::find(found.begin(), found.end(), recognizer) == found.end())
                found.push_back(recognizer);
        }
    }
    if (touches.size() > 1)
        std::stable_sort(found.begin(), found.end(),
                         [](const Recognizer& a, const Recognizer& b) { return depth(a->view()) > depth(b->view()); });
    return found;
}

void tellViews(const std::vector<Touch>& touches)
{
    std::vector<Touch> left = touches;
    while (!left.empty()) {
        const auto view = left.front()->view.lock();
        std::vector<UITouch*> mine;
        for (const Touch& touch : left)
            if (touch->view.lock() == view && touch->reachesView)
                mine.push_back(touch.get());
        std::erase_if(left, [&](const Touch& touch) { return touch->view.lock() == view; });
        if (!view || mine.empty())
            continue;
        switch (mine.front()->phase) {
        case UITouchPhase::Began:
            view->touchesBegan(mine);
            break;
        case UITouchPhase::Moved:
            view->touchesMoved(mine);
            break;
        case UITouchPhase::Ended:
            view->touchesEnded(mine);
            break;
        case UITouchPhase::Cancelled:
            view->touchesCancelled(mine);
            break;
        }
    }
}

} // namespace

struct TouchDispatcher::Touches {
    std::weak_ptr<UIView> root;
    std::map<std::int64_t, Touch> down;
    double latest = 0;

    /// Times that are not numbers, or run back, count as the latest one.
    double steady(double time)
    {
        if (time > latest && std::isfinite(time))
            latest = time;
        return latest;
    }

    /// Makes the touch known to the view that is hit and to all recognisers on the way up; null where nothing is hit.
    Touch begin(std::int64_t id, CGPoint point, double time, UIView& rootView)
    {
        UIView* const hit = rootView.hitTest(point);
        if (!hit)
            return nullptr;
        auto touch = std::make_shared<UITouch>();
        touch->id = id;
        touch->location = rootView.convertPointToView(point, nullptr);
        touch->startLocation = touch->previousLocation = touch->location;
        touch->timestamp = time;
        touch->view = hit->weak_from_this();
        touch->reachesView =
            hit->isMultipleTouchEnabled() ||
            std::none_of(down.begin(), down.end(), [&](const auto& d) { return d.second->view.lock().get() == hit; });
        const std::vector<Recognizer> candidates = candidatesFor(*hit, rootView);
        for (const Recognizer& recognizer : candidates)
            recognizer->prepareForTouch();
        for (const Recognizer& recognizer : candidates)
            if (recognizer->addTouch(touch))
                touch->gestureRecognizers.push_back(recognizer);
        down[id] = touch;
        return touch;
    }

    void deliver(const std::vector<Touch>& touches, UITouchPhase phase)
    {
        const auto rootView = root.lock();
        std::vector<UITouch*> raw;
        for (const Touch& touch : touches) {
            touch->phase = phase;
            raw.push_back(touch.get());
        }
        for (const Recognizer& recognizer : followers(touches)) {
            if (recognizer->view() && rootView && recognizer->view()->isDescendantOf(*rootView))
                recognizer->handleTouches(raw);
            else
                recognizer->abandon();
        }
        tellViews(touches);
    }

    /// Puts the touches in their places; gives those that have moved.
    std::vector<Touch> place(std::span<const Position> positions, double time)
    {
        std::vector<Touch> moved;
        const auto rootView = root.lock();
        for (const Position& position : positions) {
            const auto found = down.find(position.id);
            if (!rootView || found == down.end() || !isFinite(position.point))
                continue;
            UITouch& touch = *found->second;
            const CGPoint at = rootView->convertPointToView(position.point, nullptr);
            const bool twice = std::find(moved.begin(), moved.end(), found->second) != moved.end();
            if (at == touch.location)
                continue;
            if (!twice) {
                touch.previousLocation = touch.location;
                moved.push_back(found->second);
            }
            touch.location = at;
            touch.timestamp = time;
        }
        return moved;
    }

    void finish(std::int64_t id, double time, UITouchPhase phase)
    {
        const auto found = down.find(id);
        if (found == down.end())
            return;
        const Touch touch = found->second;
        down.erase(found);
        touch->timestamp = time;
        touch->previousLocation = touch->location;
        deliver({touch}, phase);
        touch->reachesView = false;
        for (const Recognizer& recognizer : followers({touch}))
            recognizer->dropTouch(*touch);
    }
};

TouchDispatcher::TouchDispatcher(std::weak_ptr<UIView> root)
    : m_touches(std::make_shared<Touches>())
{
    m_touches->root = std::move(root);
}

TouchDispatcher::~TouchDispatcher()
{
    cancelAllTouches(m_touches->latest);
}

std::shared_ptr<UIView> TouchDispatcher::root() const
{
    return m_touches->root.lock();
}

bool TouchDispatcher::hasTouches() const
{
    return !m_touches->down.empty();
}

void TouchDispatcher::touchBegan(std::int64_t id, CGPoint point, double time)
{
    const auto touches = m_touches;
    touches->finish(id, touches->steady(time), UITouchPhase::Cancelled);
    const auto root = touches->root.lock();
    if (!root || !isFinite(point))
        return;
    if (const Touch touch = touches->begin(id, point, touches->steady(time), *root))
        touches->deliver({touch}, UITouchPhase::Began);
}

void TouchDispatcher::touchMoved(std::int64_t id, CGPoint point, double time)
{
    const Position position{id, point};
    touchesMoved({&position, 1}, time);
}

void TouchDispatcher::touchesMoved(std::span<const Position> positions, double time)
{
    const auto touches = m_touches;
    const auto moved = touches->place(positions, touches->steady(time));
    if (!moved.empty())
        touches->deliver(moved, UITouchPhase::Moved);
}

void TouchDispatcher::touchEnded(std::int64_t id, CGPoint point, double time)
{
    const auto touches = m_touches;
    touchMoved(id, point, time); // the last stretch counts as well
    touches->finish(id, touches->steady(time), UITouchPhase::Ended);
}

void TouchDispatcher::touchCancelled(std::int64_t id, double time)
{
    const auto touches = m_touches;
    touches->finish(id, touches->steady(time), UITouchPhase::Cancelled);
}

void TouchDispatcher::cancelAllTouches(double time)
{
    const auto touches = m_touches;
    while (!touches->down.empty())
        touches->finish(touches->down.begin()->first, touches->steady(time), UITouchPhase::Cancelled);
}

} // namespace lamina
