#pragma once

#include "platform/base/DispatchQueue.h"

#include <memory>

namespace lamina {

struct TimerRecord;

/// A block that runs once, on a given queue, when its time has come on the shared clock, unless it is cancelled before.
/// Movable; whoever holds it owns the timer: it is cancelled with the holder's end and when another timer is put in its
/// place. Usable from any thread, one thread at a time.
///
///   m_hideTimer = DispatchTimer(DispatchQueue::main(), 1.5, [this] { hide(); });
class DispatchTimer {
public:
    /// No timer.
    DispatchTimer();
    /// Starts at once. Zero, a negative value or NaN is due at once, infinity never. An exception in the block is
    /// treated as the queue treats it. A timer that is left when its queue is destroyed doesn't fire.
    DispatchTimer(DispatchQueue& queue, double seconds, DispatchQueue::Block block);
    ~DispatchTimer();
    DispatchTimer(DispatchTimer&& other) noexcept;
    DispatchTimer& operator=(DispatchTimer&& other) noexcept;

    /// The block never begins after this returns, if called from the timer's queue; from another thread it may be
    /// running just then. The block is destroyed here if it has not begun.
    void cancel();
    /// Neither begun nor cancelled.
    bool isPending() const;

private:
    std::shared_ptr<TimerRecord> m_record;
};

} // namespace lamina
