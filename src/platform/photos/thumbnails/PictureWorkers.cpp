#include "platform/photos/thumbnails/PictureWorkers.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace lamina {

namespace {

constexpr int kThreads = 2;

bool isNewestFirst(PictureWorkRank rank)
{
    return rank == PictureWorkRank::Look || rank == PictureWorkRank::Read;
}

} // namespace

PictureWorkers& PictureWorkers::shared()
{
    static auto* const workers = new PictureWorkers;
    return *workers;
}

PictureWorkers::PictureWorkers()
{
    m_threads.setMaxThreadCount(kThreads);
}

PictureWorkers::Ticket PictureWorkers::add(PictureWorkRank rank, std::function<void()> work, PictureWorkKind kind,
                                           const Ticket& after)
{
    Work waiting{std::move(work), kind, DispatchQueue::main().expectWork()};
    const std::lock_guard lock(m_mutex);
    const std::int64_t age = after.order != 0 ? std::abs(after.order) : ++m_lastOrder;
    const Ticket ticket{rank, isNewestFirst(rank) ? -age : age};
    m_waiting.emplace(ticket, std::move(waiting));
    if (m_serving < kThreads) {
        ++m_serving;
        m_threads.start([this] { serve(); });
    }
    return ticket;
}

void PictureWorkers::withdraw(const Ticket& ticket)
{
    decltype(m_waiting)::node_type withdrawn; // destroyed after the lock is let go
    const std::lock_guard lock(m_mutex);
    withdrawn = m_waiting.extract(ticket);
}

void PictureWorkers::serve()
{
    Work work;
    while (takeNext(work)) {
        work.run();
        work.run = {};
        work.expected.reset();
    }
}

bool PictureWorkers::takeNext(Work& next)
{
    const std::lock_guard lock(m_mutex);
    // The work before was this thread's.
    if (next.kind == PictureWorkKind::OneAtATime)
        m_oneRuns = false;
    const auto found = std::find_if(m_waiting.begin(), m_waiting.end(), [this](const auto& waiting) {
        return waiting.second.kind == PictureWorkKind::Ordinary || !m_oneRuns;
    });
    if (found == m_waiting.end()) {
        --m_serving;
        return false;
    }
    next = std::move(found->second);
    m_waiting.erase(found);
    m_oneRuns = m_oneRuns || next.kind == PictureWorkKind::OneAtATime;
    return true;
}

} // namespace lamina
