#pragma once

#include "platform/base/Clock.h"

namespace lamina {

/// Lets at most so many things happen in a span of time, which begins with the first of them: others may ask for more.
/// By the shared clock; nothing is waited for. One thread.
class RateLimit {
public:
    RateLimit(int most, double seconds)
        : m_most(most)
        , m_seconds(seconds)
    {
    }

    /// Whether one more may happen, which counts if so.
    bool allows()
    {
        const double now = Clock::shared()->now();
        if (m_count == 0 || now - m_begin >= m_seconds) {
            m_begin = now;
            m_count = 0;
        }
        if (m_count == m_most)
            return false;
        ++m_count;
        return true;
    }

private:
    int m_most;
    double m_seconds;
    double m_begin = 0;
    int m_count = 0;
};

} // namespace lamina
