#include "gpu/core/VideoProcessingQueue.h"

#include "gpu/core/GPUImageContext.h"

#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>
#include <utility>

namespace lamina {

namespace {

class WaitingQueue;
thread_local const WaitingQueue* t_waiting = nullptr; // whose block the running one was called by

/// For the length of a block: the queues that wait for its end.
class WaitingScope {
public:
    explicit WaitingScope(const WaitingQueue* waiting)
        : m_former(std::exchange(t_waiting, waiting))
    {
    }
    ~WaitingScope() { t_waiting = m_former; }
    WaitingScope(const WaitingScope&) = delete;
    WaitingScope& operator=(const WaitingScope&) = delete;

private:
    const WaitingQueue* m_former;
};

/// A context's queue that waits for a block on another one. Until that has ended it runs what it is handed.
class WaitingQueue {
public:
    explicit WaitingQueue(const GPUImageContext& context)
        : m_context(context)
        , m_outer(t_waiting)
    {
    }

    /// The one of this context among those that wait for the running block; null where none does.
    static const WaitingQueue* of(const GPUImageContext& context)
    {
        const WaitingQueue* waiting = t_waiting;
        while (waiting && &waiting->m_context != &context)
            waiting = waiting->m_outer;
        return waiting;
    }

    /// To be run by the waiting queue.
    void hand(DispatchQueue::Block block) const
    {
        const std::scoped_lock lock(m_mutex);
        m_handed = std::move(block);
        m_changed.notify_one();
    }

    /// Gives `body`, told to be over when it is, to `submit`, and waits for its end. An exception reaches the caller.
    template <class Submit>
    void runElsewhere(const Submit& submit, const DispatchQueue::Block& body)
    {
        std::exception_ptr thrown;
        submit([&] {
            const WaitingScope scope(this);
            try {
                body();
            } catch (...) {
                thrown = std::current_exception();
            }
            const std::scoped_lock lock(m_mutex);
            m_isOver = true;
            m_changed.notify_one(); // under the lock: this object goes as soon as it is seen
        });
        serve();
        if (thrown)
            std::rethrow_exception(thrown);
    }

private:
    void serve() const
    {
        std::unique_lock lock(m_mutex);
        for (;;) {
            m_changed.wait(lock, [this] { return m_handed || m_isOver; });
            if (!m_handed)
                return;
            const DispatchQueue::Block block = std::exchange(m_handed, nullptr);
            lock.unlock();
            block();
            lock.lock();
        }
    }

    const GPUImageContext& m_context;
    const WaitingQueue* m_outer;
    mutable std::mutex m_mutex;
    mutable std::condition_variable m_changed;
    mutable DispatchQueue::Block m_handed;
    bool m_isOver = false;
};

} // namespace

GPUImageContext* contextOfCurrentQueue()
{
    return static_cast<GPUImageContext*>(DispatchQueue::currentSpecific(GPUImageContext::contextKey()));
}

bool isOnVideoProcessingQueue()
{
    const GPUImageContext* current = contextOfCurrentQueue();
    return current && current == &GPUImageContext::sharedImageProcessingContext();
}

void runSynchronouslyOnVideoProcessingQueue(const DispatchQueue::Block& block)
{
    runSynchronouslyOnContextQueue(GPUImageContext::sharedImageProcessingContext(), block);
}

void runAsynchronouslyOnVideoProcessingQueue(DispatchQueue::Block block)
{
    runAsynchronouslyOnContextQueue(GPUImageContext::sharedImageProcessingContext(), std::move(block));
}

void runSynchronouslyOnContextQueue(GPUImageContext& context, const DispatchQueue::Block& block)
{
    const GPUImageContext* current = contextOfCurrentQueue();
    if (current == &context) {
        block();
        return;
    }
    // Queues without threads share the caller's: this one may be the one that waits, further up.
    if (!current || context.contextQueue().isCurrent()) {
        context.contextQueue().sync(block);
        return;
    }
    WaitingQueue own(*current);
    if (const WaitingQueue* waiting = WaitingQueue::of(context))
        own.runElsewhere([&](DispatchQueue::Block body) { waiting->hand(std::move(body)); }, block);
    else
        own.runElsewhere([&](DispatchQueue::Block body) { context.contextQueue().async(std::move(body)); }, block);
}

void runAsynchronouslyOnContextQueue(GPUImageContext& context, DispatchQueue::Block block)
{
    if (contextOfCurrentQueue() == &context)
        block();
    else
        context.contextQueue().async(std::move(block));
}

} // namespace lamina
