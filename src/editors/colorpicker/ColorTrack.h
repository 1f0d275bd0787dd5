#pragma once

#include <algorithm>

// What a control over a range of colours has: a track along which an indicator stands, a margin away from the edges.

namespace lamina::colortrack {

inline constexpr double kIndicatorSize = 24;
inline constexpr double kMargin = 20;
inline constexpr double kTotalMargin = 2 * kMargin;

/// The place of a share in [0, 1] of the track, along a side of this length.
constexpr double placeOf(double share, double side)
{
    return share * (side - kTotalMargin) + kMargin;
}

/// The share where a finger is; it is held at the track's ends. Where there is no track it is 0 or 1.
constexpr double shareAt(double place, double side)
{
    const double length = side - kTotalMargin;
    if (length <= 0)
        return place < kMargin ? 0 : 1;
    return std::clamp((place - kMargin) / length, 0.0, 1.0);
}

} // namespace lamina::colortrack
