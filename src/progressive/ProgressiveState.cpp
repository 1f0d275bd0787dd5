#include "progressive/ProgressiveState_p.h"

#include "platform/base/DispatchQueue.h"
#include "platform/base/ScopeExit.h"

#include <utility>

namespace lamina {

void ProgressiveState::viewGoes()
{
    m_view = nullptr;
    {
        const std::scoped_lock lock(m_mutex);
        m_gone = true;
    }
    m_changed.notify_all();
}

void ProgressiveState::onMainAndWait(std::function<void(ProgressiveState& state)> body)
{
    const auto isDone = std::make_shared<bool>(false);
    DispatchQueue::main().async([self = shared_from_this(), body = std::move(body), isDone] {
        const ScopeExit telling([&] {
            const std::scoped_lock lock(self->m_mutex);
            *isDone = true;
            self->m_changed.notify_all();
        });
        if (self->m_view)
            body(*self);
    });
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return *isDone || m_gone; });
}

std::string ProgressiveState::url() const
{
    const std::scoped_lock lock(m_mutex);
    return m_url;
}

void ProgressiveState::setURL(std::string url)
{
    const std::scoped_lock lock(m_mutex);
    m_url = std::move(url);
}

std::optional<Error> ProgressiveState::error() const
{
    const std::scoped_lock lock(m_mutex);
    return m_error;
}

void ProgressiveState::setError(std::optional<Error> error)
{
    const std::scoped_lock lock(m_mutex);
    m_error = std::move(error);
}

} // namespace lamina
