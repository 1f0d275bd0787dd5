#include "platform/base/Clock.h"

#include "platform/base/Deadline.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/TimerService_p.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <limits>
#include <system_error>
#include <thread>

namespace lamina {

namespace {

constexpr double kNever = std::numeric_limits<double>::infinity();
constexpr double kRounding = 1e-9; // ten steps of a tenth reach a timer of one second

} // namespace

void Clock::setWakeUpHandler(std::function<void()> handler)
{
    auto shared = std::make_shared<const std::function<void()>>(std::move(handler));
    const std::lock_guard lock(m_handlerMutex);
    m_handler.swap(shared);
}

void Clock::wakeUp()
{
    std::unique_lock lock(m_handlerMutex);
    const auto handler = m_handler;
    lock.unlock(); // the handler asks for the next wake-up
    if (handler && *handler)
        (*handler)();
}

std::shared_ptr<Clock> Clock::shared()
{
    return TimerService::instance().clock();
}

void Clock::setShared(std::shared_ptr<Clock> clock)
{
    TimerService::instance().setClock(clock ? std::move(clock) : SteadyClock::instance());
}

struct SteadyClock::Alarm {
    std::mutex mutex;
    std::condition_variable changed;
    double time = kNever;
    bool threadStarted = false;
    std::atomic<bool> isSilent = false;
};

SteadyClock::SteadyClock()
    : m_alarm(new Alarm)
{
}

std::shared_ptr<SteadyClock> SteadyClock::instance()
{
    // Never destroyed: its thread may still run while the process ends.
    static SteadyClock* const clock = new SteadyClock;
    return {std::shared_ptr<void>(), clock};
}

double SteadyClock::now() const
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

void SteadyClock::requestWakeUp(double time)
{
    const std::lock_guard lock(m_alarm->mutex);
    m_alarm->time = time;
    if (time == kNever)
        return; // the thread wakes for nothing at most once
    if (!m_alarm->threadStarted)
        startThread();
    m_alarm->changed.notify_one();
}

void SteadyClock::startThread()
{
    try {
        std::thread([this] { serve(); }).detach();
        m_alarm->threadStarted = true;
    } catch (const std::system_error&) {
        // The next request tries again.
    }
    if (!m_alarm->isSilent.exchange(!m_alarm->threadStarted) && m_alarm->isSilent)
        DispatchQueue::main().async([] {}); // it may be asleep, and has to look from now on
}

bool SteadyClock::isSilent() const
{
    return m_alarm->isSilent;
}

void SteadyClock::serve()
{
    std::unique_lock lock(m_alarm->mutex);
    for (;;) {
        if (m_alarm->time == kNever) {
            m_alarm->changed.wait(lock);
        } else if (const double left = m_alarm->time - now(); left > 0) {
            const double before = m_alarm->time;
            waitUntil(m_alarm->changed, lock, deadlineAfter(left), [&] { return m_alarm->time != before; });
        } else {
            m_alarm->time = kNever;
            lock.unlock();
            wakeUp();
            lock.lock();
        }
    }
}

ManualClock::ManualClock(double now)
    : m_now(now)
    , m_wakeUp(kNever)
{
}

double ManualClock::now() const
{
    const std::lock_guard lock(m_mutex);
    return m_now;
}

void ManualClock::requestWakeUp(double time)
{
    const std::lock_guard lock(m_mutex);
    m_wakeUp = time;
}

void ManualClock::advance(double seconds)
{
    std::unique_lock lock(m_mutex);
    const double end = m_now + std::max(0.0, seconds);
    while (m_wakeUp <= end + kRounding) {
        m_now = std::max(m_now, m_wakeUp);
        m_wakeUp = kNever;
        lock.unlock();
        wakeUp();
        lock.lock();
    }
    m_now = std::max(m_now, end);
}

} // namespace lamina
