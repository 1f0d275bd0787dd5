#pragma once

#include "platform/base/DispatchQueue.h"

#include <memory>
#include <utility>

namespace lamina {

/// A share in a queue for who may be its last holder on a thread that must not wait for the queue's work: the share is
/// let go on the queue itself. Any thread.
class KeptQueue {
public:
    explicit KeptQueue(std::shared_ptr<DispatchQueue> queue)
        : m_queue(std::move(queue))
    {
    }
    ~KeptQueue()
    {
        DispatchQueue& queue = *m_queue;
        queue.async([kept = std::move(m_queue)] {});
    }
    KeptQueue(const KeptQueue&) = delete;
    KeptQueue& operator=(const KeptQueue&) = delete;

    DispatchQueue* operator->() const { return m_queue.get(); }
    const std::shared_ptr<DispatchQueue>& share() const { return m_queue; }

private:
    std::shared_ptr<DispatchQueue> m_queue;
};

} // namespace lamina
