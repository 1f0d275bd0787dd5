#include "imageops/Angles_p.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace lamina {

float radiansOf(float degrees)
{
    return degrees * 0.017453293F;
}

std::optional<Angle> Angle::make(float radians)
{
    if (!std::isfinite(radians))
        return std::nullopt;
    constexpr double kQuarter = std::numbers::pi / 2;
    const double angle = radians;
    const double nearest = std::nearbyint(angle / kQuarter);
    // Two roundings to a float's 24 bits, of the factor and of the product. The least error counted is one that moves
    // no pixel of any picture by a hundredth; the most keeps huge angles, whose neighbours are turns apart, from all
    // being quarters.
    const double error = std::clamp(std::abs(angle) * 2.5e-7, 1e-7, 1e-4);
    if (std::abs(angle - nearest * kQuarter) > error)
        return Angle{std::sin(angle), std::cos(angle), std::nullopt};
    const auto quarters = static_cast<int>(std::fmod(nearest, 4) + 4) & 3;
    constexpr std::array<double, 4> kSines{0, 1, 0, -1};
    constexpr std::array<double, 4> kCosines{1, 0, -1, 0};
    return Angle{kSines[static_cast<std::size_t>(quarters)], kCosines[static_cast<std::size_t>(quarters)], quarters};
}

} // namespace lamina
