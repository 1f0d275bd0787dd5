#pragma once

#include <cstddef>
#include <functional>
#include <future>
#include <type_traits>
#include <vector>

namespace lamina {

/// What `work(index)` gives for 0 to `count` - 1, each on a thread of its own but for the first, which the caller does;
/// all are done when it returns. For a few pieces of work that take long and wait for nobody, such as reading files;
/// rows of pixels are for the `WorkerPool`. `work` must not throw. Usable from any thread.
template <class Work>
std::vector<std::invoke_result_t<const Work&, std::size_t>> sideBySide(std::size_t count, const Work& work)
{
    using Value = std::invoke_result_t<const Work&, std::size_t>;
    std::vector<std::future<Value>> others;
    // Where there is no thread to be had, the caller does that one too.
    for (std::size_t index = 1; index < count; ++index)
        others.push_back(std::async(std::launch::async | std::launch::deferred, std::cref(work), index));
    std::vector<Value> values;
    values.reserve(count);
    if (count > 0)
        values.push_back(work(0));
    for (std::future<Value>& other : others)
        values.push_back(other.get());
    return values;
}

} // namespace lamina
