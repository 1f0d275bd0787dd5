#pragma once

#include <condition_variable>
#include <mutex>

namespace lamina {

/// A counting semaphore: `signal` adds one, `wait` takes one and sleeps while there is none. From any thread. It must
/// outlive every call.
class DispatchSemaphore {
public:
    /// `count`: how many waits pass at once; not negative.
    explicit DispatchSemaphore(long count = 0);
    DispatchSemaphore(const DispatchSemaphore&) = delete;
    DispatchSemaphore& operator=(const DispatchSemaphore&) = delete;

    /// Adds one and wakes a waiting thread, if there is one.
    void signal();
    /// Takes one; sleeps until there is one.
    void wait();
    /// Waits at most `timeoutSeconds` by the steady clock; whether one was taken. Zero, negative and NaN: no waiting.
    bool wait(double timeoutSeconds);
    /// Takes one if there is one, without waiting; whether one was taken.
    bool tryWait();

private:
    std::mutex m_mutex;
    std::condition_variable m_signalled;
    long m_count;
};

} // namespace lamina
