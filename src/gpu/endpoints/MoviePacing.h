#pragma once

#include "platform/base/CMTime.h"

#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>

namespace lamina {

/// Holds frames back until they are due: all by one clock, which starts with the first of them, so that what one frame
/// costs is made up for by the next ones and nothing adds up. By one thread at a time; `wake` from any.
class MoviePacing {
public:
    /// The next frame starts the clock anew.
    void restart();
    /// Sleeps until the frame is due, or `wake` is called and `stopped` says so. A frame that is late doesn't sleep.
    void waitUntilDue(const CMTime& frameTime, const std::function<bool()>& stopped);
    /// Has a sleep ask whether it is to be stopped.
    void wake();

private:
    struct Start {
        CMTime frameTime;
        double actualTime; ///< on the shared clock
    };
    std::optional<Start> m_start;
    std::mutex m_mutex;
    std::condition_variable m_changed;
};

} // namespace lamina
