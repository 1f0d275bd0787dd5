#pragma once

#include "platform/base/Clock.h"
#include "platform/base/DispatchQueue.h"

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace lamina {

/// One timer. The side that turns `settled` on, the queue that runs the block or the one that cancels, owns the block.
struct TimerRecord {
    using Key = std::pair<double, std::uint64_t>; // due time, then order of creation

    std::weak_ptr<DispatchQueue::State> queue;
    DispatchQueue::Block block;
    std::atomic<bool> settled{false};
    Key key; // guarded by the service

    /// Claims the block; true for the first caller alone.
    bool settle() { return !settled.exchange(true); }
};

/// Keeps every one-shot timer of the process in the order they are due, and hands those that are due to their queues.
/// The clock in force tells when to look. Never destroyed.
class TimerService {
public:
    /// The one instance, made at the first call.
    static TimerService& instance();

    std::shared_ptr<Clock> clock() const;
    /// Timers keep the time that was left to them.
    void setClock(std::shared_ptr<Clock> clock);

    /// A block for `queue`, due in `seconds` (zero, negative or NaN: at once) on the clock in force.
    std::shared_ptr<TimerRecord> schedule(const std::shared_ptr<DispatchQueue::State>& queue, double seconds,
                                          DispatchQueue::Block block);
    /// The block does not begin any more and is let go, unless the queue has claimed it.
    void cancel(TimerRecord& record);
    /// Drops the timers of a queue that takes no more work.
    void cancelAll(const DispatchQueue::State& queue);
    /// Hands every timer that is due to its queue, in the order they are due.
    void submitDueTimers();

private:
    using Delivery = std::pair<std::shared_ptr<TimerRecord>, std::shared_ptr<DispatchQueue::State>>;

    TimerService();
    void adopt(Clock& clock);
    void requestWakeUp();
    std::vector<Delivery> takeDueTimers();

    std::mutex m_deliveryMutex; // keeps timers in order on their way to the queues; taken before m_mutex
    mutable std::mutex m_mutex;
    std::shared_ptr<Clock> m_clock;
    std::map<TimerRecord::Key, std::shared_ptr<TimerRecord>> m_timers;
    std::uint64_t m_created = 0;
};

} // namespace lamina
