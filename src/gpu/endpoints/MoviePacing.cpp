#include "gpu/endpoints/MoviePacing.h"

#include "platform/base/Clock.h"

#include <chrono>

namespace lamina {

void MoviePacing::restart()
{
    m_start.reset();
}

void MoviePacing::waitUntilDue(const CMTime& frameTime, const std::function<bool()>& stopped)
{
    const double now = Clock::shared()->now();
    if (!m_start)
        m_start = Start{frameTime, now};
    const double early = (frameTime - m_start->frameTime).seconds() - (now - m_start->actualTime);
    if (!(early > 0)) // what is no number isn't waited for either
        return;
    std::unique_lock lock(m_mutex);
    m_changed.wait_for(lock, std::chrono::duration<double>(early), stopped);
}

void MoviePacing::wake()
{
    const std::scoped_lock lock(m_mutex);
    m_changed.notify_all();
}

} // namespace lamina
