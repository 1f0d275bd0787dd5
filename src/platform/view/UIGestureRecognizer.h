#pragma once

#include "platform/base/CGGeometry.h"

#include <cassert>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace lamina {

class UIGestureRecognizer;
class UIView;
struct UITouch;

/// Possible is the state at rest. A continuous gesture goes Began, Changed any number of times, then Ended or
/// Cancelled; a discrete one (a tap) goes straight to Ended. Failed: these fingers do something else.
enum class UIGestureRecognizerState { Possible, Began, Changed, Ended, Cancelled, Failed };

/// Every answer has a default, so that a delegate overrides what it cares about.
class UIGestureRecognizerDelegate {
public:
    virtual ~UIGestureRecognizerDelegate() = default;
    /// Asked when the gesture is about to be recognised; false makes it fail.
    virtual bool gestureRecognizerShouldBegin(UIGestureRecognizer& recognizer);
    /// Asked as a finger comes down; false keeps that finger from the recogniser.
    virtual bool gestureRecognizerShouldReceiveTouch(UIGestureRecognizer& recognizer, const UITouch& touch);
    /// Whether both may be recognised on the same fingers. Either delegate's yes is enough.
    virtual bool gestureRecognizer(UIGestureRecognizer& recognizer,
                                   UIGestureRecognizer& shouldRecognizeSimultaneouslyWithGestureRecognizer);
};

/// Makes a gesture out of the touches in its view and the views above it, and tells its actions at every step.
///
/// Of several recognisers that share a finger one is recognised; the others fail, unless a delegate lets two go
/// together. The first to recognise wins, in one event that of the nearest view (children before ancestors), in one
/// view the one attached first. One that is under way refuses later ones on its fingers.
///
/// Once one is recognised, the view that was touched hears that its touches are cancelled.
///
/// After Ended, Cancelled or Failed the recogniser ignores everything until its fingers are lifted, then it is Possible
/// again. An action may remove or disable its recogniser, or destroy the view. A view that is destroyed under a gesture
/// ends it without a word; one that leaves the tree cancels it at the next event. Must be held by std::shared_ptr. Main
/// thread.
class UIGestureRecognizer : public std::enable_shared_from_this<UIGestureRecognizer> {
public:
    using State = UIGestureRecognizerState;
    using Action = std::function<void(UIGestureRecognizer&)>;

    UIGestureRecognizer() = default;
    virtual ~UIGestureRecognizer();
    UIGestureRecognizer(const UIGestureRecognizer&) = delete;
    UIGestureRecognizer& operator=(const UIGestureRecognizer&) = delete;

    /// Adds an action, called at Began, Changed, Ended and Cancelled. For views that own the recogniser.
    void addAction(Action action);
    /// The same, as long as `owner` lives.
    void addTarget(std::weak_ptr<const void> owner, Action action);
    /// Calls `(target->*action)(recogniser)` as long as the target lives: `pan->addTarget(this, &Screen::handlePan)`.
    /// The target must be held by a shared pointer already, so not inside its constructor.
    template <class Target, class Class, class Recognizer>
    void addTarget(Target* target, void (Class::*action)(Recognizer&))
    {
        assert(!target->weak_from_this().expired());
        addTarget(std::weak_ptr<const void>(target->weak_from_this()),
                  [target, action](UIGestureRecognizer& recognizer) {
                      if (auto* typed = dynamic_cast<Recognizer*>(&recognizer))
                          (target->*action)(*typed);
                  });
    }

    State state() const { return m_state; }
    /// Began or Changed.
    bool isActive() const { return m_state == State::Began || m_state == State::Changed; }
    /// Null when it belongs to none.
    UIView* view() const { return m_view; }
    /// Default true. Disabling cancels a gesture under way.
    bool isEnabled() const { return m_enabled; }
    void setEnabled(bool enabled);
    /// Default none; not owned.
    std::shared_ptr<UIGestureRecognizerDelegate> delegate() const { return m_delegate.lock(); }
    void setDelegate(std::weak_ptr<UIGestureRecognizerDelegate> delegate) { m_delegate = std::move(delegate); }

    std::size_t numberOfTouches() const { return m_touches.size(); }
    /// The middle of the fingers (of the last ones, once they are lifted) in the coordinates of `view`; null: of the
    /// root.
    CGPoint locationInView(const UIView* view) const;

    /// True when either delegate lets both go together.
    bool recognizesSimultaneouslyWith(UIGestureRecognizer& other);

protected:
    /// What subclasses make of fingers; all of `touches` are tracked already, and those that end are tracked still. Not
    /// called in a state where the gesture is over.
    virtual void touchesBegan(const std::vector<UITouch*>& touches);
    virtual void touchesMoved(const std::vector<UITouch*>& touches);
    virtual void touchesEnded(const std::vector<UITouch*>& touches);
    /// Forgets the gesture: the recogniser is about to be Possible again.
    virtual void reset() {}
    /// Whether a finger that comes down now is of interest; an ignored one is never seen.
    virtual bool acceptsTouch() const { return true; }
    /// Whether a finger that joins ends a gesture under way. All fingers then count as having just come down, for this
    /// recogniser and for those that it had beaten to them.
    virtual bool restartsWithAnotherTouch() const { return false; }
    /// True while the gesture may still come although no finger is down (between two taps).
    virtual bool awaitsMoreTouches() const { return false; }

    /// From Possible: to `state` (Began, or Ended for discrete gestures) with the action called, or to Failed if a
    /// delegate or a gesture under way forbids it. True when the gesture is in that state after the action.
    bool recognize(State state);
    /// The steps of a gesture under way, with the action called; nothing in other states.
    void change();
    void end();
    /// Under way: Cancelled, with the action called. Possible: Failed.
    void cancel();
    void fail();

    /// Runs Began, `update` and Changed, Ended without a finger. False, and nothing happens, when it is disabled,
    /// without a view, busy or refused by its delegate.
    bool performSteps(std::optional<CGPoint> rootLocation, const std::function<void()>& update);
    /// The same for discrete gestures: Ended, at once.
    bool performOnce(std::optional<CGPoint> rootLocation);
    /// Fingers on the view now, in the order in which they came.
    const std::vector<std::shared_ptr<UITouch>>& touches() const { return m_touches; }
    /// Where the fingers' middle is, in root coordinates.
    CGPoint centroid() const;

private:
    friend class UIView;
    friend class TouchDispatcher;

    // For UIView. setView: cancels a gesture under way (the action hears of it while view() is still the old one), then
    // belongs to `view`, or to none. viewDestroyed: forgets the view and the gesture without calling anything.
    void setView(UIView* view);
    void viewDestroyed();

    // For TouchDispatcher. All that are offered a touch prepare for it; it is added, handled any number of times, and
    // dropped after its last event.
    void prepareForTouch();
    bool addTouch(const std::shared_ptr<UITouch>& touch);
    void handleTouches(const std::vector<UITouch*>& touches);
    void dropTouch(const UITouch& touch);

    bool isOver() const;
    bool enterWithoutTouches(State state, std::optional<CGPoint> rootLocation);
    void abandon();
    void settle();
    void restart();
    void fire();
    bool mayBegin();
    bool tracksAnyOf(const UIGestureRecognizer& other) const;
    std::vector<std::shared_ptr<UIGestureRecognizer>> rivals() const;

    struct Target {
        std::weak_ptr<const void> owner;
        bool owned = false;
        Action action;
    };
    std::vector<Target> m_targets;
    State m_state = State::Possible;
    UIView* m_view = nullptr;
    bool m_enabled = true;
    std::weak_ptr<UIGestureRecognizerDelegate> m_delegate;
    std::vector<std::shared_ptr<UITouch>> m_touches;
    CGPoint m_lastLocation; ///< root coordinates
};

} // namespace lamina
