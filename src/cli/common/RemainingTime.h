#pragma once

#include <chrono>
#include <string>

namespace lamina {

/// How long work will still take, if it goes on as it did since this was made.
class RemainingTime {
public:
    /// "40 s left", "3 min left", "2 h left", of work of which so much is done, 0 to 1; empty where that can't be told.
    std::string text(double done) const;

private:
    std::chrono::steady_clock::time_point m_begin = std::chrono::steady_clock::now();
};

} // namespace lamina
