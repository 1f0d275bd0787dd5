#pragma once

#include "platform/base/CGGeometry.h"

#include <cmath>

namespace lamina {

/// Places on the device are cut to ±this, so that sides and sums of two places stay within an int.
inline constexpr double kFarthestPlace = 1 << 28;

/// Places on the device that lie no further apart than this, in pixels, are one: edges on pixel borders stay sharp in
/// spite of the rounding errors of transforms, and turns that cancel out are none.
inline constexpr double kSamePlace = 1.0 / 4096;

/// The pixels that `rect` touches; empty when it is, or holds a value that is not a number.
inline IntRect deviceCover(const CGRect& rect)
{
    constexpr CGRect kEverything{-kFarthestPlace, -kFarthestPlace, 2 * kFarthestPlace, 2 * kFarthestPlace};
    const bool isNumber = !std::isnan(rect.minX()) && !std::isnan(rect.minY());
    return isNumber ? integralCover(rect.intersection(kEverything)) : IntRect{};
}

} // namespace lamina
