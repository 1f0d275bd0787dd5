#pragma once

#include "platform/view/PresentationHost.h"

#include "platform/view/UIViewController.h"

#include <deque>
#include <functional>
#include <memory>
#include <vector>

namespace lamina {

class UINavigationController;

/// One change of screens, from the request to the completion. Transitions run one after another, each beginning on a
/// turn of the main queue later than its request; whatever they hold lives until the completion has run.
class ScreenTransition {
public:
    /// What the host is shown. With neither side set only the completion runs.
    PresentationTransition shown;
    /// Those that go out of sight, in the order in which they are told, and those that come into sight. Screens that
    /// are in that state already hear nothing.
    std::vector<std::shared_ptr<UIViewController>> leaving;
    std::vector<std::shared_ptr<UIViewController>> arriving;
    /// Whether those that arrive hear first that they have (presentations), or those that leave (stacks).
    bool arrivingSettleFirst = true;
    /// The stack inside which this happens; its screens and the host hear of nothing while it is out of sight itself.
    std::shared_ptr<UINavigationController> stack;
    std::function<void()> completion;

    /// Seconds of an animated transition.
    static constexpr double kDuration = 0.3;

    static void submit(ScreenTransition transition);
    /// Runs the completion in its turn, after the transitions that were asked for before.
    static void submitCompletion(std::function<void()> completion);
    /// Counts the transition under way as finished, if its host has gone.
    static void finishForLostHost();

    /// For stacks, which pass on what they hear themselves. False when the screen was in that state already.
    static bool beginAppearing(UIViewController& screen, bool animated);
    static bool beginDisappearing(UIViewController& screen, bool animated);
    static void endAppearing(UIViewController& screen, bool animated);
    static void endDisappearing(UIViewController& screen, bool animated);

private:
    class Queue;
    friend void afterTransitions(std::function<void()> work);
    void begin();
    void end();
    bool animated() const { return shown.duration > 0; }
};

} // namespace lamina
