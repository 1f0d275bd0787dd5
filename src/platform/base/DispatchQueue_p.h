#pragma once

#include "platform/base/Deadline.h"
#include "platform/base/DispatchQueue.h"

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace lamina {

/// What a queue is made of, shared with its thread and its timers so that neither outlives it.
struct DispatchQueue::State : std::enable_shared_from_this<State> {
    explicit State(std::string name);
    virtual ~State() = default;

    virtual bool isCurrent() const = 0;
    /// No more work comes; returns when what is left has run, unless called by the queue itself.
    virtual void close() = 0;

    /// Queues a block behind the others. Where the queue has to do without a thread, it and those before have run when
    /// this returns, but for one that another thread, or the caller's own block, is at.
    void submit(Block block);
    /// The block of a timer counted by `timersPending`: it stops being pending and becomes queued in one step. To be
    /// followed by `runHere`, without the locks of timers.
    void submitTimer(Block block);
    /// Runs what is queued on the calling thread where there is no thread for it, and nobody else is at it.
    virtual void runHere() {}
    /// Runs `body` as a part of the block that the calling thread is at.
    virtual void runInside(const std::function<void()>& body) { body(); }
    /// Counts a timer that will call `submitTimer`, or was taken back before.
    void timerStarted();
    void timerCancelled();

    /// Runs the first block without the lock. The queue must not be empty.
    void runFirst(std::unique_lock<std::mutex>& lock);

    const std::string label;
    std::atomic<bool> forbidsWaitingForMain{false};

    std::mutex mutex;
    std::condition_variable changed;  // for the thread that runs the blocks
    std::condition_variable finished; // for threads in sync
    std::deque<Block> blocks;
    bool closed = false;
    std::size_t timersPending = 0;
    std::map<const void*, void*> specifics;

protected:
    /// Before a block is queued, with the lock held. May throw, and then the block is not queued.
    virtual void prepareForWork() {}
    /// After a block was queued: sees to it that it is run. The lock is held, and may be given up.
    virtual void announceWork(std::unique_lock<std::mutex>& lock) = 0;
};

struct MainQueue::MainState final : DispatchQueue::State {
    MainState();

    bool isCurrent() const override;
    void close() override {}
    void announceWork(std::unique_lock<std::mutex>& lock) override;

    /// What each pump does first: hands over timers that are due, and lets the wake handler speak again.
    void beginTurn();
    /// Runs one block; if there is none, waits for one or until `ready()`. False once the deadline has passed.
    bool runOrWait(const Deadline& deadline, const std::function<bool()>& ready);
    /// The end of one expected piece of work.
    void workArrived();
    /// The lock must be held.
    bool isIdle() const { return blocks.empty() && timersPending == 0 && workExpected == 0; }

    std::atomic<std::thread::id> mainThread{};
    std::size_t workExpected = 0;
    bool wakeUpSent = false;

    std::mutex handlerMutex; // held while the handler runs; taken before `mutex`, never after it
    std::function<void()> wakeHandler;
};

/// Whether what runs on this thread may not wait for the main queue.
bool waitingForMainIsForbidden();

} // namespace lamina
