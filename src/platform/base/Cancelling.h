#pragma once

#include <atomic>

namespace lamina {

/// Whether work that is told so by a flag, set from any thread, has been cancelled; without a flag it never is.
inline bool isCancelled(const std::atomic<bool>* cancelled)
{
    return cancelled && cancelled->load(std::memory_order_relaxed);
}

} // namespace lamina
