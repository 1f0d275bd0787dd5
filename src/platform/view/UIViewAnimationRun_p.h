#pragma once

#include "platform/base/DispatchTimer.h"

#include <functional>
#include <memory>

namespace lamina {

/// An animation whose completion is still to come. Main thread.
class UIViewAnimationRun {
public:
    explicit UIViewAnimationRun(std::function<void(bool)> completion);

    /// It is over in `seconds`, unless it was interrupted already.
    static void start(const std::shared_ptr<UIViewAnimationRun>& run, double seconds);
    /// Not finished: says so on a later turn. Nothing when it is over.
    void interrupt();
    /// All that are under way are over on the next turn, in the order in which they began.
    static void finishForLostHost();

private:
    void finishIn(double seconds);
    void leave();

    std::function<void(bool)> m_completion; ///< empty: it is over
    DispatchTimer m_timer;
};

} // namespace lamina
