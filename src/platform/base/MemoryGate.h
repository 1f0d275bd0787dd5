#pragma once

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <mutex>

namespace lamina {

/// Lets work begin side by side while what all of it needs together stays within a limit; one piece may always go on,
/// whatever it needs. Usable from any thread.
class MemoryGate {
public:
    explicit MemoryGate(std::size_t limit)
        : m_limit(limit)
    {
    }

    /// Holds what a piece of work needs until it goes.
    class Pass {
    public:
        Pass(MemoryGate& gate, std::size_t bytes)
            : m_gate(gate)
            , m_bytes(bytes)
        {
            std::unique_lock lock(gate.m_mutex);
            gate.m_changed.wait(lock, [&] { return gate.m_used == 0 || bytes <= gate.m_limit - gate.m_used; });
            gate.m_used += bytes;
        }
        ~Pass()
        {
            {
                const std::lock_guard lock(m_gate.m_mutex);
                m_gate.m_used -= m_bytes;
            }
            m_gate.m_changed.notify_all();
        }
        Pass(const Pass&) = delete;
        Pass& operator=(const Pass&) = delete;

    private:
        MemoryGate& m_gate;
        std::size_t m_bytes;
    };

    /// Waits until `bytes` may be taken beside what the others hold.
    Pass enter(std::size_t bytes) { return Pass(*this, std::clamp<std::size_t>(bytes, 1, m_limit)); }

private:
    const std::size_t m_limit;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::size_t m_used = 0;
};

} // namespace lamina
