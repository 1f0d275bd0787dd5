#pragma once

#include <algorithm>
#include <cstdint>

namespace lamina {

/// When the next part of a picture is worth making: each costs as much as the picture is large, however little has come
/// since the last. A plain value.
class ProgressivePace {
public:
    enum class Due { No, Later, Now };

    /// `size` bytes have come of `expected` (below 1: not known), at `now` in seconds.
    Due due(std::int64_t size, std::int64_t expected, double now) const
    {
        if (m_isUnderWay || size - m_size < step(expected))
            return Due::No;
        return now < m_earliest ? Due::Later : Due::Now;
    }
    /// Seconds until it may be made, where that is later.
    double wait(double now) const { return m_earliest - now; }

    /// One was made of so many bytes, from then until now, and is on its way to the view.
    void made(std::int64_t size, double began, double now)
    {
        constexpr double kRests = 4; // so that a fifth of the time goes into pictures that are replaced soon
        m_size = size;
        m_earliest = now + kRests * (now - began);
        m_isUnderWay = true;
    }
    /// The view has it.
    void arrived() { m_isUnderWay = false; }

private:
    std::int64_t step(std::int64_t expected) const
    {
        constexpr std::int64_t kPartsOfKnown = 64;
        constexpr std::int64_t kPartsOfUnknown = 16;
        return std::max<std::int64_t>(1, expected > 0 ? expected / kPartsOfKnown : m_size / kPartsOfUnknown);
    }

    std::int64_t m_size = 0;
    double m_earliest = 0;
    bool m_isUnderWay = false;
};

} // namespace lamina
