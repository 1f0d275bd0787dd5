#pragma once

#include "platform/view/UIViewController.h"

#include <functional>
#include <memory>

namespace lamina {

/// What a window is to show: one change from screen to screen.
struct PresentationTransition {
    /// A first screen, a presentation and its end, a step on a stack and back.
    enum class Kind { Root, Present, Dismiss, Push, Pop };
    Kind kind = Kind::Root;
    std::shared_ptr<UIViewController> from; ///< covered or leaving (the topmost of several); null at the start
    std::shared_ptr<UIViewController> to;   ///< arriving or seen again; null when the last screen leaves a stack
    UIModalPresentationStyle style = UIModalPresentationStyle::FullScreen; ///< of the presented screen
    double duration = 0;                                                   ///< seconds; 0: not animated
};

/// Whoever shows the screens. Transitions come one at a time, the next after the one before was finished. Main thread.
class PresentationHost {
public:
    virtual ~PresentationHost() = default;
    /// Shows the transition and calls `finished` on a later turn of the main queue, when it is over.
    virtual void startTransition(const PresentationTransition& transition, std::function<void()> finished) = 0;
    /// Whether what is animated is seen moving. Default false: nobody looks, and so nobody waits for it.
    virtual bool showsMotion() const { return false; }
    /// Whether anybody looks at all, so that what changes by itself (a display link) need be kept going. Default false.
    virtual bool showsFrames() const { return false; }

    /// The host in force; a headless one until another is set.
    static std::shared_ptr<PresentationHost> current();
    /// Null: a headless one. Transitions and animations that the former host has not finished count as finished.
    static void setCurrent(std::shared_ptr<PresentationHost> host);
};

} // namespace lamina
