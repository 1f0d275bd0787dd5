#pragma once

#include <algorithm>
#include <atomic>
#include <cstdint>

namespace lamina {

/// How far some work has come, told by whoever does it and read by whoever shows it. From any thread.
class NSProgress {
public:
    explicit NSProgress(std::int64_t totalUnitCount = 0)
        : m_total(totalUnitCount)
    {
    }

    std::int64_t totalUnitCount() const { return m_total; }
    void setTotalUnitCount(std::int64_t units) { m_total = units; }
    std::int64_t completedUnitCount() const { return m_completed; }
    void setCompletedUnitCount(std::int64_t units) { m_completed = units; }
    /// In [0, 1]; 0 while the total is not known.
    double fractionCompleted() const
    {
        const auto total = static_cast<double>(m_total.load());
        return total > 0 ? std::clamp(static_cast<double>(m_completed.load()) / total, 0.0, 1.0) : 0;
    }

private:
    std::atomic<std::int64_t> m_total;
    std::atomic<std::int64_t> m_completed = 0;
};

} // namespace lamina
