#include "platform/base/TimerService_p.h"

#include "platform/base/DispatchQueue_p.h"

#include <limits>

namespace lamina {

TimerService& TimerService::instance()
{
    static TimerService* const service = new TimerService;
    return *service;
}

TimerService::TimerService()
    : m_clock(SteadyClock::instance())
{
    adopt(*m_clock);
}

void TimerService::adopt(Clock& clock)
{
    clock.setWakeUpHandler([this] { submitDueTimers(); });
}

std::shared_ptr<Clock> TimerService::clock() const
{
    const std::lock_guard lock(m_mutex);
    return m_clock;
}

void TimerService::setClock(std::shared_ptr<Clock> clock)
{
    {
        const std::lock_guard lock(m_mutex);
        if (clock == m_clock)
            return;
        const double shift = clock->now() - m_clock->now();
        std::map<TimerRecord::Key, std::shared_ptr<TimerRecord>> shifted;
        for (auto& [key, record] : m_timers) {
            record->key.first += shift;
            shifted.emplace(record->key, std::move(record));
        }
        m_timers = std::move(shifted);
        m_clock.swap(clock);
        adopt(*m_clock);
        requestWakeUp();
    }
    clock->setWakeUpHandler({});
    clock->requestWakeUp(std::numeric_limits<double>::infinity());
    submitDueTimers(); // one may have fallen due on the former clock meanwhile
}

void TimerService::requestWakeUp()
{
    m_clock->requestWakeUp(m_timers.empty() ? std::numeric_limits<double>::infinity() : m_timers.begin()->first.first);
}

std::shared_ptr<TimerRecord> TimerService::schedule(const std::shared_ptr<DispatchQueue::State>& queue, double seconds,
                                                    DispatchQueue::Block block)
{
    const double delay = seconds > 0 ? seconds : 0.0;
    auto record = std::make_shared<TimerRecord>();
    record->queue = queue;
    record->block = std::move(block);
    queue->timerStarted();
    {
        const std::lock_guard lock(m_mutex);
        record->key = {m_clock->now() + delay, m_created++};
        m_timers.emplace(record->key, record);
        if (m_timers.begin()->second == record)
            requestWakeUp();
    }
    if (delay == 0)
        submitDueTimers();
    return record;
}

void TimerService::cancel(TimerRecord& record)
{
    if (!record.settle())
        return;
    bool wasWaiting = false;
    {
        const std::lock_guard lock(m_mutex);
        // The key stays unique when the block is on its way to the queue already: nothing is found then.
        wasWaiting = m_timers.erase(record.key) > 0;
    }
    if (const auto queue = record.queue.lock(); queue && wasWaiting)
        queue->timerCancelled();
    record.block = nullptr;
}

void TimerService::cancelAll(const DispatchQueue::State& queue)
{
    std::vector<std::shared_ptr<TimerRecord>> dropped; // outlives the lock: blocks may own timers
    const std::lock_guard lock(m_mutex);
    for (auto it = m_timers.begin(); it != m_timers.end();) {
        if (it->second->queue.lock().get() != &queue) {
            ++it;
            continue;
        }
        if (it->second->settle())
            dropped.push_back(std::move(it->second));
        it = m_timers.erase(it);
    }
}

std::vector<TimerService::Delivery> TimerService::takeDueTimers()
{
    std::vector<Delivery> due;
    const std::lock_guard lock(m_mutex);
    const double now = m_clock->now();
    while (!m_timers.empty() && m_timers.begin()->first.first <= now) {
        auto record = std::move(m_timers.begin()->second);
        m_timers.erase(m_timers.begin());
        auto queue = record->queue.lock();
        due.emplace_back(std::move(record), std::move(queue));
    }
    requestWakeUp();
    return due;
}

void TimerService::submitDueTimers()
{
    std::vector<Delivery> due; // outlives the lock: what it frees may use timers
    std::unique_lock lock(m_deliveryMutex);
    due = takeDueTimers();
    for (const auto& [record, queue] : due) {
        if (!queue)
            continue;
        queue->submitTimer([record = record] {
            if (!record->settle())
                return;
            const auto block = std::exchange(record->block, nullptr);
            block();
        });
    }
    lock.unlock();
    for (const auto& [record, queue] : due)
        if (queue)
            queue->runHere();
}

} // namespace lamina
