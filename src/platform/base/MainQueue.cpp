#include "platform/base/Clock.h"
#include "platform/base/Deadline.h"
#include "platform/base/DispatchQueue_p.h"
#include "platform/base/Log.h"
#include "platform/base/TimerService_p.h"

#include <algorithm>
#include <cassert>
#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <thread>
#include <unistd.h>

namespace lamina {

namespace {

constexpr double kLookSeconds = 0.01;

} // namespace

MainQueue::MainState::MainState()
    : State("main")
{
}

bool MainQueue::MainState::isCurrent() const
{
    const std::thread::id bound = mainThread;
    return bound == std::thread::id() ? ::gettid() == ::getpid() : bound == std::this_thread::get_id();
}

void MainQueue::MainState::announceWork(std::unique_lock<std::mutex>& lock)
{
    changed.notify_all();
    if (std::exchange(wakeUpSent, true))
        return;
    lock.unlock();
    const std::lock_guard handlerLock(handlerMutex);
    if (wakeHandler)
        wakeHandler();
}

void MainQueue::MainState::beginTurn()
{
    {
        const std::lock_guard lock(mutex);
        wakeUpSent = false;
        if (timersPending == 0 && !SteadyClock::instance()->isSilent())
            return;
    }
    TimerService::instance().submitDueTimers();
}

bool MainQueue::MainState::runOrWait(const Deadline& deadline, const std::function<bool()>& ready)
{
    beginTurn();
    // Timers that nobody tells of are looked for.
    const Deadline look = SteadyClock::instance()->isSilent() ? deadlineAfter(kLookSeconds) : std::nullopt;
    std::unique_lock lock(mutex);
    waitUntil(changed, lock,
              look && deadline ? std::min(look, deadline)
              : look           ? look
                               : deadline,
              [&] { return !blocks.empty() || ready(); });
    if (!blocks.empty())
        runFirst(lock);
    return !deadline || std::chrono::steady_clock::now() < *deadline;
}

void MainQueue::MainState::workArrived()
{
    const std::lock_guard lock(mutex);
    --workExpected;
    changed.notify_all();
}

MainQueue& DispatchQueue::main()
{
    static MainQueue* const queue = new MainQueue(std::make_shared<MainQueue::MainState>());
    return *queue;
}

MainQueue::MainQueue(const std::shared_ptr<MainState>& state)
    : DispatchQueue(state)
    , m_main(state.get())
{
}

void MainQueue::bindToCurrentThread()
{
    std::thread::id expected;
    const std::thread::id here = std::this_thread::get_id();
    if (!m_main->mainThread.compare_exchange_strong(expected, here) && expected != here) {
        assert(false && "the main queue belongs to another thread");
        logError("the main queue belongs to another thread");
    }
}

bool MainQueue::mayPump()
{
    bindToCurrentThread();
    return isCurrent();
}

void MainQueue::drain()
{
    if (!mayPump())
        return;
    for (;;) {
        m_main->beginTurn();
        std::unique_lock lock(m_main->mutex);
        if (m_main->blocks.empty())
            return;
        m_main->runFirst(lock);
    }
}

void MainQueue::runTurn()
{
    if (!mayPump())
        return;
    m_main->beginTurn();
    std::unique_lock lock(m_main->mutex);
    for (std::size_t left = m_main->blocks.size(); left > 0 && !m_main->blocks.empty(); --left)
        m_main->runFirst(lock);
}

bool MainQueue::runUntilIdle(double timeoutSeconds)
{
    if (!mayPump())
        return false;
    const Deadline deadline = deadlineAfter(timeoutSeconds);
    const auto isIdle = [this] {
        const std::lock_guard lock(m_main->mutex);
        return m_main->isIdle();
    };
    while (!isIdle()) {
        if (!m_main->runOrWait(deadline, [this] { return m_main->isIdle(); }))
            return isIdle();
    }
    return true;
}

bool MainQueue::runUntil(const std::function<bool()>& done, double timeoutSeconds)
{
    if (!mayPump())
        return false;
    const Deadline deadline = deadlineAfter(timeoutSeconds);
    while (!done()) {
        if (!m_main->runOrWait(deadline, [] { return false; }))
            return done();
    }
    return true;
}

MainQueue::ExpectedWork MainQueue::expectWork()
{
    {
        const std::lock_guard lock(m_main->mutex);
        ++m_main->workExpected;
    }
    return ExpectedWork(m_main, [](MainState* state) { state->workArrived(); });
}

void MainQueue::setWakeHandler(std::function<void()> handler)
{
    const std::lock_guard handlerLock(m_main->handlerMutex);
    m_main->wakeHandler = std::move(handler);
    bool workWaits = false;
    {
        const std::lock_guard lock(m_main->mutex);
        workWaits = !m_main->blocks.empty();
    }
    if (workWaits && m_main->wakeHandler)
        m_main->wakeHandler();
}

} // namespace lamina
