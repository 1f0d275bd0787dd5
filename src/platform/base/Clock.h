#pragma once

#include <functional>
#include <memory>
#include <mutex>

namespace lamina {

/// What timers go by: a time that never runs back, and one wake-up call. All operations from any thread.
class Clock {
public:
    virtual ~Clock() = default;
    Clock(const Clock&) = delete;
    Clock& operator=(const Clock&) = delete;

    /// Seconds since a moment of the clock's own choice.
    virtual double now() const = 0;

    /// Asks for one call of the wake-up handler at `time` or soon after, at once if that has passed. A new request
    /// takes the place of the one before; infinity asks for none. The call comes from another thread or a later moment,
    /// never from inside this operation.
    virtual void requestWakeUp(double time) = 0;

    /// Set by the keeper of timers on this clock. May still be called once after it was replaced.
    void setWakeUpHandler(std::function<void()> handler);

    /// The clock that dispatch timers go by: the steady clock, unless another one was installed.
    static std::shared_ptr<Clock> shared();
    /// Installs a clock (null: the steady clock). Pending timers keep the time that was left to them.
    static void setShared(std::shared_ptr<Clock> clock);

protected:
    Clock() = default;
    /// For clocks: calls the wake-up handler, on the calling thread. Must be called without the clock's own locks.
    void wakeUp();

private:
    std::mutex m_handlerMutex;
    std::shared_ptr<const std::function<void()>> m_handler;
};

/// The system's monotonic clock. One thread, made at the first request, sleeps until the wake-up; without a request it
/// costs nothing. There is one instance, which is never destroyed. Where the system has no thread to give the clock is
/// silent: the main queue looks for what is due while it is pumped.
class SteadyClock final : public Clock {
public:
    /// The one instance.
    static std::shared_ptr<SteadyClock> instance();

    double now() const override;
    void requestWakeUp(double time) override;

    /// Whether the last request found no thread, so that nobody will be woken.
    bool isSilent() const;

private:
    SteadyClock();
    void startThread();
    void serve();

    struct Alarm;
    Alarm* m_alarm;
};

/// A clock for tests, which moves only when it is told to.
class ManualClock final : public Clock {
public:
    /// Stands at `now` seconds.
    explicit ManualClock(double now = 0);

    double now() const override;
    void requestWakeUp(double time) override;

    /// Moves on by `seconds` (not negative), stopping at every wake-up asked for on the way; the handler runs on the
    /// calling thread with `now()` being the time it asked for. When this returns, every timer that fell due has been
    /// submitted.
    void advance(double seconds);

private:
    mutable std::mutex m_mutex;
    double m_now;
    double m_wakeUp;
};

} // namespace lamina
