#include "platform/base/DispatchTimer.h"

#include "platform/base/TimerService_p.h"

namespace lamina {

DispatchTimer::DispatchTimer() = default;

DispatchTimer::DispatchTimer(DispatchQueue& queue, double seconds, DispatchQueue::Block block)
    : m_record(TimerService::instance().schedule(queue.m_state, seconds, std::move(block)))
{
}

DispatchTimer::~DispatchTimer()
{
    cancel();
}

DispatchTimer::DispatchTimer(DispatchTimer&& other) noexcept = default;

DispatchTimer& DispatchTimer::operator=(DispatchTimer&& other) noexcept
{
    // The old timer's block may own this very object: it goes last.
    DispatchTimer former;
    former.m_record = std::exchange(m_record, std::exchange(other.m_record, nullptr));
    return *this;
}

void DispatchTimer::cancel()
{
    if (const auto record = std::exchange(m_record, nullptr))
        TimerService::instance().cancel(*record);
}

bool DispatchTimer::isPending() const
{
    return m_record && !m_record->settled;
}

} // namespace lamina
