#pragma once

#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

namespace lamina {

class MainQueue;

/// Runs blocks one after another, in the order they were submitted, always on the same thread: GL contexts are bound to
/// threads. That thread belongs to the queue and is made when the first block is submitted. Where the system has none
/// to give then, the queue does without for good: whoever submits a block runs what is queued, in its order and one
/// block at a time, before the submission returns; so it holds no lock that such a block takes.
///
/// All operations may be called from any thread. A submission happens before the block runs.
///
/// The destructor lets all submitted work run to its end, what that work submits included, and then returns. Run by a
/// block of the queue itself it returns at once, and the thread finishes the remaining blocks afterwards. Timers that
/// are not due yet are dropped. Work that waits for the thread that destroys its queue would wait forever.
class DispatchQueue {
public:
    using Block = std::function<void()>;
    struct State; // for the implementation

    /// The label stands in log messages and, shortened, as the thread's name.
    explicit DispatchQueue(std::string label);
    ~DispatchQueue();
    DispatchQueue(const DispatchQueue&) = delete;
    DispatchQueue& operator=(const DispatchQueue&) = delete;

    /// The queue of the main thread, which has no thread of its own: the owner of that thread pumps it.
    static MainQueue& main();

    /// Returns at once. An exception that leaves the block is logged with the label and goes no further. The block and
    /// what it holds are destroyed on the queue.
    void async(Block block);

    /// Runs `body` on the queue, after all that was submitted before, and returns its value; an exception it throws
    /// reaches the caller. From the queue itself it runs at once, before blocks that wait. Two queues that wait for
    /// each other wait forever.
    template <class Body>
    std::invoke_result_t<Body&> sync(Body&& body)
    {
        using Value = std::invoke_result_t<Body&>;
        if constexpr (std::is_void_v<Value>) {
            runSync([&] { body(); });
        } else if constexpr (std::is_reference_v<Value>) {
            std::remove_reference_t<Value>* value = nullptr;
            runSync([&] {
                auto&& result = body();
                value = &result;
            });
            return static_cast<Value>(*value);
        } else {
            std::optional<Value> value;
            runSync([&] { value.emplace(body()); });
            return std::move(*value);
        }
    }

    /// Submits the block when `seconds` have passed on the shared clock; at once on zero, a negative value or NaN.
    /// Blocks that are due together keep the order of these calls. For one that can be taken back, see DispatchTimer.
    void after(double seconds, Block block);

    /// Whether the calling thread is the queue's, that is, whether a block of the queue is running the caller.
    bool isCurrent() const;

    /// A value that the queue's blocks can ask for, found by an address that only its user knows. Null takes it away.
    /// The queue does not own it.
    void setSpecific(const void* key, void* value);
    /// The value of the queue that runs the caller; null outside a queue or where none was set.
    static void* currentSpecific(const void* key);

    /// From now on nothing that runs on this queue, nor what it waits for on other queues, may wait for the main queue:
    /// `main().sync` asserts there in debug builds.
    void forbidWaitingForMain();

protected:
    explicit DispatchQueue(std::shared_ptr<State> state);

private:
    friend class DispatchTimer;
    void runSync(const std::function<void()>& body);

    std::shared_ptr<State> m_state;
};

/// The main thread's queue. The window system's loop, the command or a test pumps it; between pumps its blocks wait.
///
/// The main thread is the one that first calls `bindToCurrentThread` or a pumping operation; until then the process's
/// first thread stands in for it. On it `isCurrent` is true and `sync` runs inline, inside blocks and outside.
///
/// Pumping is for the main thread alone (asserted; elsewhere it does nothing but log). From inside a block it is
/// allowed, for nested event loops: the blocks that follow then run before that block has ended. Never destroyed.
class MainQueue : public DispatchQueue {
public:
    static constexpr double kNoTimeout = std::numeric_limits<double>::infinity();

    /// Makes the calling thread the main thread. Does nothing there a second time.
    void bindToCurrentThread();

    /// Runs what is queued or due until nothing is left, what the blocks submit meanwhile included. Waits for nothing.
    void drain();

    /// Runs what is queued or due now, but not what these blocks submit. For an event loop that wants its turn in
    /// between; the wake handler tells of the rest.
    void runTurn();

    /// Runs blocks, and sleeps in between, until the queue is idle: no block queued, no one-shot timer pending on it,
    /// no work expected. False when `timeoutSeconds` (on the real clock) passed before. With a manual clock in force
    /// somebody else has to advance it.
    bool runUntilIdle(double timeoutSeconds = kNoTimeout);

    /// The same until `done()` is true. It is asked at the start and after each block; a change of its answer from
    /// another thread is followed by a submitted block.
    bool runUntil(const std::function<bool()>& done, double timeoutSeconds = kNoTimeout);

    /// An answer that is still to come.
    using ExpectedWork = std::shared_ptr<void>;
    /// While a copy of the result lives, the queue does not count as idle. The side that hands work to another thread
    /// holds one until the answer has been submitted here. Let it go on any thread.
    [[nodiscard]] ExpectedWork expectWork();

    /// Tells the owner of an event loop, on any thread, that it should pump soon: once when work comes, and again only
    /// after the next pump has begun. The handler only wakes the loop: it may neither submit nor pump. Work that waits
    /// already is told at once. No call of the former handler is under way when this returns (so it can't be called by
    /// a handler). Empty: none.
    void setWakeHandler(std::function<void()> handler);

private:
    friend class DispatchQueue;
    struct MainState;
    explicit MainQueue(const std::shared_ptr<MainState>& state);
    bool mayPump();

    MainState* m_main;
};

} // namespace lamina
