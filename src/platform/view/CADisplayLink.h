#pragma once

#include "platform/base/DispatchTimer.h"

#include <functional>

namespace lamina {

/// Calls its handler again and again while it runs, for what has to follow something that doesn't tell of its changes.
/// Goes by the shared clock, on the main queue; a turn that comes late is not made up for. Where nobody looks (see
/// `PresentationHost::showsFrames`) it stands still, so that nobody waits for it. Main thread.
class CADisplayLink {
public:
    /// Does not run yet. The handler may stop, start and destroy the link.
    explicit CADisplayLink(std::function<void()> handler, double framesPerSecond = kDisplayRate);

    /// The rate of a usual display.
    static constexpr double kDisplayRate = 60;

    /// The first call comes after one frame. Nothing while it runs already.
    void start();
    void stop() { m_timer.cancel(); }
    bool isRunning() const { return m_timer.isPending(); }

private:
    void scheduleNext();

    std::function<void()> m_handler;
    double m_interval;
    DispatchTimer m_timer;
};

} // namespace lamina
