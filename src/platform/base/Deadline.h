#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>

namespace lamina {

/// A moment on the steady clock to give up at; nothing: never.
using Deadline = std::optional<std::chrono::steady_clock::time_point>;

/// `seconds` from now. Not a number and negative values count as now; what lies decades ahead as never.
inline Deadline deadlineAfter(double seconds)
{
    constexpr double kForever = 1e9; // far below where the clock's nanoseconds overflow
    if (seconds > kForever)
        return std::nullopt;
    const std::chrono::duration<double> wait(seconds > 0 ? seconds : 0.0);
    return std::chrono::steady_clock::now() + std::chrono::duration_cast<std::chrono::steady_clock::duration>(wait);
}

/// Waits until `ready()`; false when the deadline came first.
template <class Ready>
bool waitUntil(std::condition_variable& condition, std::unique_lock<std::mutex>& lock, const Deadline& deadline,
               Ready ready)
{
    if (deadline)
        return condition.wait_until(lock, *deadline, ready);
    condition.wait(lock, ready);
    return true;
}

} // namespace lamina
