#include "platform/base/DispatchQueue.h"

#include "platform/base/BlockFailures.h"
#include "platform/base/DispatchQueue_p.h"
#include "platform/base/ExceptionCause.h"
#include "platform/base/Log.h"
#include "platform/base/TimerService_p.h"

#include <cassert>
#include <exception>
#include <mutex>
#include <pthread.h>
#include <system_error>

namespace lamina {

namespace {

thread_local DispatchQueue::State* t_running = nullptr; // the queue whose thread this is
thread_local bool t_mainIsForbidden = false;            // by a queue that waits for what runs here

/// Who else hears of an exception that left a block. Never destroyed: queues may still work while the process ends.
class FailureListener {
public:
    static FailureListener& shared()
    {
        static auto* const listener = new FailureListener;
        return *listener;
    }
    void set(BlockFailureHandler handler)
    {
        const std::lock_guard lock(m_mutex);
        m_handler = std::move(handler);
    }
    void call(const std::string& cause)
    {
        std::unique_lock lock(m_mutex);
        const BlockFailureHandler handler = m_handler;
        lock.unlock();
        if (handler)
            handler(cause);
    }

private:
    std::mutex m_mutex;
    BlockFailureHandler m_handler;
};

void runLogged(const DispatchQueue::Block& block, const std::string& label)
{
    try {
        block();
    } catch (...) {
        const std::string cause = causeOfException();
        logError("queue " + label + ": a block threw: " + cause);
        FailureListener::shared().call(cause);
    }
}

/// For the length of what runs: the queue that it belongs to.
class RunningOn {
public:
    explicit RunningOn(DispatchQueue::State& state)
        : m_former(std::exchange(t_running, &state))
    {
    }
    ~RunningOn() { t_running = m_former; }
    RunningOn(const RunningOn&) = delete;
    RunningOn& operator=(const RunningOn&) = delete;

private:
    DispatchQueue::State* m_former;
};

/// A queue with a thread of its own, or with those of its callers where the system has none to give.
struct ThreadState final : DispatchQueue::State {
    using State::State;

    bool isCurrent() const override { return runner == std::this_thread::get_id(); }

    void prepareForWork() override
    {
        if (hasThread || isThreadless)
            return;
        try {
            thread = std::thread([self = std::static_pointer_cast<ThreadState>(shared_from_this())] { self->serve(); });
            hasThread = true;
        } catch (const std::system_error&) {
            isThreadless = true; // for good: its blocks may count on one order and one place
        }
    }

    void announceWork(std::unique_lock<std::mutex>&) override { changed.notify_one(); }

    void runHere() override
    {
        const auto self = shared_from_this(); // a block may destroy the queue
        std::unique_lock lock(mutex);
        if (!isThreadless || runner.load() != std::thread::id() || blocks.empty())
            return;
        const RunningOn running(*this);
        runner = std::this_thread::get_id();
        while (!blocks.empty())
            runFirst(lock);
        runner = std::thread::id();
        changed.notify_all();
    }

    void runInside(const std::function<void()>& body) override
    {
        const RunningOn running(*this);
        body();
    }

    void close() override
    {
        std::unique_lock lock(mutex);
        closed = true;
        changed.notify_one();
        std::thread ending = std::move(thread);
        if (!isCurrent() && isThreadless) {
            lock.unlock();
            runHere(); // what whoever has submitted it has not come to yet
            lock.lock();
            changed.wait(lock, [this] { return blocks.empty() && runner.load() == std::thread::id(); });
        }
        lock.unlock();
        if (isCurrent() && ending.joinable())
            ending.detach();
        else if (ending.joinable())
            ending.join();
        TimerService::instance().cancelAll(*this); // those that the last blocks set too
    }

    void serve()
    {
        const RunningOn running(*this);
        runner = std::this_thread::get_id();
        pthread_setname_np(pthread_self(), label.substr(0, 15).c_str()); // the longest name there is
        std::unique_lock lock(mutex);
        for (;;) {
            changed.wait(lock, [this] { return !blocks.empty() || closed; });
            if (blocks.empty())
                return;
            runFirst(lock);
        }
    }

    std::thread thread;
    bool hasThread = false;
    bool isThreadless = false;
    std::atomic<std::thread::id> runner{}; // of the blocks; none while nobody runs those of a queue without a thread
};

/// For the length of a block: what a waiting queue may not do, the block may not do for it.
class InheritedProhibition {
public:
    explicit InheritedProhibition(bool forbidden)
        : m_former(std::exchange(t_mainIsForbidden, t_mainIsForbidden || forbidden))
    {
    }
    ~InheritedProhibition() { t_mainIsForbidden = m_former; }
    InheritedProhibition(const InheritedProhibition&) = delete;
    InheritedProhibition& operator=(const InheritedProhibition&) = delete;

private:
    bool m_former;
};

} // namespace

bool waitingForMainIsForbidden()
{
    return t_mainIsForbidden || (t_running && t_running->forbidsWaitingForMain);
}

DispatchQueue::State::State(std::string name)
    : label(std::move(name))
{
}

void DispatchQueue::State::submit(Block block)
{
    std::unique_lock lock(mutex);
    prepareForWork();
    blocks.push_back(std::move(block));
    announceWork(lock);
    if (lock.owns_lock())
        lock.unlock();
    runHere();
}

void DispatchQueue::State::submitTimer(Block block)
{
    std::unique_lock lock(mutex);
    if (closed)
        return; // a timer that fell due while its queue was being destroyed
    prepareForWork();
    --timersPending;
    blocks.push_back(std::move(block));
    announceWork(lock);
}

void DispatchQueue::State::timerStarted()
{
    const std::lock_guard lock(mutex);
    ++timersPending;
}

void DispatchQueue::State::timerCancelled()
{
    const std::lock_guard lock(mutex);
    --timersPending;
    changed.notify_all();
}

void DispatchQueue::State::runFirst(std::unique_lock<std::mutex>& lock)
{
    {
        const Block block = std::move(blocks.front());
        blocks.pop_front();
        lock.unlock();
        runLogged(block, label);
    }
    lock.lock();
}

DispatchQueue::DispatchQueue(std::string label)
    : m_state(std::make_shared<ThreadState>(std::move(label)))
{
}

DispatchQueue::DispatchQueue(std::shared_ptr<State> state)
    : m_state(std::move(state))
{
}

DispatchQueue::~DispatchQueue()
{
    m_state->close();
}

void DispatchQueue::async(Block block)
{
    const std::shared_ptr<State> state = m_state; // the block may destroy the queue
    state->submit(std::move(block));
}

void DispatchQueue::runSync(const std::function<void()>& body)
{
    if (m_state->isCurrent()) {
        m_state->runInside(body);
        return;
    }
    const bool forbidden = waitingForMainIsForbidden();
    assert(!(forbidden && this == &main()) && "this queue may not wait for the main queue");
    const std::shared_ptr<State> state = m_state; // the block may destroy the queue
    std::exception_ptr error;
    bool done = false;
    state->submit([&] {
        {
            const InheritedProhibition prohibition(forbidden);
            try {
                body();
            } catch (...) {
                error = std::current_exception();
            }
        }
        const std::lock_guard lock(state->mutex);
        done = true;
        state->finished.notify_all();
    });
    {
        std::unique_lock lock(state->mutex);
        state->finished.wait(lock, [&] { return done; });
    }
    if (error)
        std::rethrow_exception(error);
}

void DispatchQueue::after(double seconds, Block block)
{
    TimerService::instance().schedule(m_state, seconds, std::move(block));
}

bool DispatchQueue::isCurrent() const
{
    return m_state->isCurrent();
}

void DispatchQueue::setSpecific(const void* key, void* value)
{
    const std::lock_guard lock(m_state->mutex);
    if (value)
        m_state->specifics[key] = value;
    else
        m_state->specifics.erase(key);
}

void* DispatchQueue::currentSpecific(const void* key)
{
    State* state = t_running;
    if (!state) {
        const DispatchQueue& mainQueue = main();
        if (!mainQueue.isCurrent())
            return nullptr;
        state = mainQueue.m_state.get();
    }
    const std::lock_guard lock(state->mutex);
    const auto found = state->specifics.find(key);
    return found == state->specifics.end() ? nullptr : found->second;
}

void setBlockFailureHandler(BlockFailureHandler handler)
{
    FailureListener::shared().set(std::move(handler));
}

void DispatchQueue::forbidWaitingForMain()
{
    m_state->forbidsWaitingForMain = true;
}

} // namespace lamina
