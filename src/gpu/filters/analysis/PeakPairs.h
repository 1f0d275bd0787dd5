#pragma once

#include "gpu/filters/analysis/PeakFinder.h"

#include "platform/base/CGGeometry.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>

namespace lamina {

/// Two numbers of each peak of a frame, in an array that is kept from frame to frame. It has an end: further peaks
/// overwrite the last pair.
class PeakPairs {
public:
    static constexpr std::size_t kRoom = 1024; ///< numbers
    static constexpr unsigned kMost = 511;     ///< pairs

    /// `pairOf` makes a `CGPoint` of a peak. The number of pairs.
    unsigned fill(std::span<const Peak> peaks, const auto& pairOf)
    {
        unsigned count = 0;
        for (const Peak& peak : peaks) {
            count = std::min(count + 1, kMost);
            const CGPoint pair = pairOf(peak);
            m_numbers[2 * count - 2] = static_cast<float>(pair.x);
            m_numbers[2 * count - 1] = static_cast<float>(pair.y);
        }
        return count;
    }
    const std::array<float, kRoom>& numbers() const { return m_numbers; }

private:
    std::array<float, kRoom> m_numbers{};
};

} // namespace lamina
