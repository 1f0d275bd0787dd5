#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <mutex>
#include <string>

namespace lamina {

/// Calls `work(index)` for each of 0 to `count` - 1 once, side by side on all cores, and returns when all are done.
/// Whoever is free takes the next one. What one of them splits into rows runs in its own thread. `work` must not throw.
void workOnAll(std::size_t count, const std::function<void(std::size_t)>& work);

/// Prints texts in the order of their numbers, whatever the order in which they come, each as soon as those before it
/// are there. Usable from any thread.
class OrderedOutput {
public:
    /// `print` puts a text out, and tells whether that went well.
    explicit OrderedOutput(std::function<bool(const std::string&)> print);

    /// The text of number `index`, from 0, each given once; it may be empty.
    void put(std::size_t index, std::string text);
    /// Whether all so far was printed. After a failure nothing is.
    bool isGood() const;

private:
    const std::function<bool(const std::string&)> m_print;
    mutable std::mutex m_mutex;
    std::map<std::size_t, std::string> m_waiting;
    std::size_t m_next = 0;
    bool m_isGood = true;
};

} // namespace lamina
