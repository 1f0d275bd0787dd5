#include "cli/batch/BatchRun.h"

#include "platform/base/WorkerPool.h"

#include <algorithm>
#include <atomic>
#include <utility>

namespace lamina {

void workOnAll(std::size_t count, const std::function<void(std::size_t)>& work)
{
    std::atomic<std::size_t> next{0};
    const std::size_t threads = std::min<std::size_t>(count, WorkerPool::shared().concurrency());
    // As many calls as there are threads, of which each goes on until there is nothing left: files differ in size.
    WorkerPool::shared().parallelFor(0, static_cast<int>(threads), 1, [&](int, int) {
        for (std::size_t index = next.fetch_add(1); index < count; index = next.fetch_add(1))
            work(index);
    });
}

OrderedOutput::OrderedOutput(std::function<bool(const std::string&)> print)
    : m_print(std::move(print))
{
}

void OrderedOutput::put(std::size_t index, std::string text)
{
    const std::lock_guard lock(m_mutex);
    m_waiting.emplace(index, std::move(text));
    for (auto first = m_waiting.begin(); first != m_waiting.end() && first->first == m_next;
         first = m_waiting.erase(first), ++m_next) {
        if (m_isGood && !first->second.empty())
            m_isGood = m_print(first->second);
    }
}

bool OrderedOutput::isGood() const
{
    const std::lock_guard lock(m_mutex);
    return m_isGood;
}

} // namespace lamina
