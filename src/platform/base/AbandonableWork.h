#pragma once

#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <optional>
#include <system_error>
#include <thread>
#include <type_traits>
#include <utility>

namespace lamina {

/// Does `work` and gives what it returns; nothing where `cancelled` came first. It is done in a thread of its own then,
/// which the caller leaves to itself within some milliseconds: `work` must own all that it touches, and what it owns
/// and gives is freed there. Without `cancelled` it is done in the caller's thread.
template <class Work>
std::optional<std::invoke_result_t<Work>> doUnlessCancelled(Work work, const std::atomic<bool>* cancelled)
{
    if (!cancelled)
        return work();
    const auto task = std::make_shared<std::packaged_task<std::invoke_result_t<Work>()>>(std::move(work));
    auto result = task->get_future();
    try {
        std::thread([task] { (*task)(); }).detach();
    } catch (const std::system_error&) { // there are too many threads
        (*task)();
    }
    constexpr std::chrono::milliseconds kLook{10};
    while (result.wait_for(kLook) != std::future_status::ready)
        if (cancelled->load(std::memory_order_relaxed))
            return std::nullopt;
    return result.get();
}

} // namespace lamina
