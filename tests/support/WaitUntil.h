#pragma once

#include <chrono>
#include <functional>
#include <thread>

namespace lamina::test {

/// Waits, without an event loop, until `done`, which is asked now and then; false when that took too long.
inline bool waitUntil(const std::function<bool()>& done)
{
    using namespace std::chrono_literals;
    const auto deadline = std::chrono::steady_clock::now() + 40s;
    while (!done()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(1ms);
    }
    return true;
}

} // namespace lamina::test
