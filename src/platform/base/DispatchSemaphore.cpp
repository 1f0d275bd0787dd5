#include "platform/base/DispatchSemaphore.h"

#include "platform/base/Deadline.h"

#include <algorithm>

namespace lamina {

DispatchSemaphore::DispatchSemaphore(long count)
    : m_count(std::max(0L, count))
{
}

void DispatchSemaphore::signal()
{
    const std::lock_guard lock(m_mutex);
    ++m_count;
    m_signalled.notify_one(); // inside the lock: a waiter that destroys the semaphore can't do so before
}

void DispatchSemaphore::wait()
{
    std::unique_lock lock(m_mutex);
    m_signalled.wait(lock, [this] { return m_count > 0; });
    --m_count;
}

bool DispatchSemaphore::wait(double timeoutSeconds)
{
    const Deadline deadline = deadlineAfter(timeoutSeconds);
    std::unique_lock lock(m_mutex);
    if (!waitUntil(m_signalled, lock, deadline, [this] { return m_count > 0; }))
        return false;
    --m_count;
    return true;
}

bool DispatchSemaphore::tryWait()
{
    const std::lock_guard lock(m_mutex);
    if (m_count == 0)
        return false;
    --m_count;
    return true;
}

} // namespace lamina
