#include "platform/base/CMTime.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <optional>

namespace lamina {

namespace {

__extension__ using Wide = __int128;

constexpr Wide kMaximumValue = std::numeric_limits<std::int64_t>::max();

struct Quotient {
    Wide value;
    bool exact;
};

/// To the nearest, halves away from zero. The divisor is positive, and both stay clear of the type's end by a factor
/// of 2.
Quotient dividedRounding(Wide dividend, Wide divisor)
{
    const Wide whole = dividend / divisor;
    const Wide rest = dividend % divisor;
    const Wide away = 2 * (rest < 0 ? -rest : rest) >= divisor ? (dividend < 0 ? -1 : 1) : 0;
    return {whole + away, rest == 0};
}

/// numerator / denominator seconds. At most 2^95 and 2^62, so that the product with a timescale fits.
CMTime fraction(Wide numerator, Wide denominator, std::int32_t timescale, CMTimeFlags flags, std::int64_t epoch)
{
    for (; timescale > 0; timescale /= 2) {
        const auto [value, exact] = dividedRounding(numerator * timescale, denominator);
        if (value < -kMaximumValue || value > kMaximumValue)
            continue;
        return {static_cast<std::int64_t>(value), timescale, exact ? flags : flags | kCMTimeFlags_HasBeenRounded,
                epoch};
    }
    return numerator < 0 ? kCMTimeNegativeInfinity : kCMTimePositiveInfinity;
}

int rank(const CMTime& time)
{
    if (!time.isValid())
        return 4;
    if (time.isNegativeInfinity())
        return 0;
    if (time.isPositiveInfinity())
        return 2;
    return time.isNumeric() ? 1 : 3;
}

/// What a sum is when a special time is part of it; nothing when both are numeric.
std::optional<CMTime> specialSum(const CMTime& x, const CMTime& y)
{
    const bool positive = x.isPositiveInfinity() || y.isPositiveInfinity();
    const bool negative = x.isNegativeInfinity() || y.isNegativeInfinity();
    if (!x.isValid() || !y.isValid() || (positive && negative))
        return kCMTimeInvalid;
    if (positive)
        return kCMTimePositiveInfinity;
    if (negative)
        return kCMTimeNegativeInfinity;
    if (!x.isNumeric() || !y.isNumeric())
        return kCMTimeIndefinite;
    return std::nullopt;
}

CMTime numericSum(const CMTime& x, const CMTime& y, int sign, std::int64_t epoch)
{
    const std::int64_t common = std::lcm<std::int64_t>(x.timescale, y.timescale);
    const auto timescale = static_cast<std::int32_t>(std::min<std::int64_t>(common, kCMTimeMaxTimescale));
    const Wide numerator = Wide{x.value} * y.timescale + sign * (Wide{y.value} * x.timescale);
    return fraction(numerator, Wide{x.timescale} * y.timescale, timescale, x.flags | y.flags, epoch);
}

} // namespace

CMTime CMTime::makeWithSeconds(double seconds, std::int32_t timescale)
{
    if (std::isnan(seconds) || timescale <= 0)
        return kCMTimeInvalid;
    for (; timescale > 0; timescale /= 2) {
        const double product = seconds * timescale;
        // What the product lost: a value that looks whole may have been rounded all the same.
        const double error = std::fma(seconds, timescale, -product);
        const double value = std::round(product);
        if (!(std::abs(value) < 0x1p63))
            continue;
        const bool exact = value == product && error == 0;
        return {static_cast<std::int64_t>(value), timescale,
                exact ? kCMTimeFlags_Valid : kCMTimeFlags_Valid | kCMTimeFlags_HasBeenRounded, 0};
    }
    return seconds < 0 ? kCMTimeNegativeInfinity : kCMTimePositiveInfinity;
}

double CMTime::seconds() const
{
    if (isNumeric())
        return static_cast<double>(value) / timescale;
    if (isPositiveInfinity())
        return std::numeric_limits<double>::infinity();
    if (isNegativeInfinity())
        return -std::numeric_limits<double>::infinity();
    return std::numeric_limits<double>::quiet_NaN();
}

CMTime CMTime::converted(std::int32_t newTimescale) const
{
    if (!isNumeric())
        return *this;
    return newTimescale > 0 ? fraction(value, timescale, newTimescale, flags, epoch) : kCMTimeInvalid;
}

CMTime operator+(const CMTime& x, const CMTime& y)
{
    if (const auto special = specialSum(x, y))
        return *special;
    if (x.epoch != y.epoch && x.epoch != 0 && y.epoch != 0)
        return kCMTimeInvalid;
    return numericSum(x, y, 1, x.epoch != 0 ? x.epoch : y.epoch);
}

CMTime operator-(const CMTime& x, const CMTime& y)
{
    if (const auto special = specialSum(x, -y))
        return *special;
    if (x.epoch != y.epoch && y.epoch != 0)
        return kCMTimeInvalid;
    return numericSum(x, y, -1, x.epoch == y.epoch ? 0 : x.epoch);
}

CMTime CMTime::operator-() const
{
    if (isPositiveInfinity())
        return kCMTimeNegativeInfinity;
    if (isNegativeInfinity())
        return kCMTimePositiveInfinity;
    return isNumeric() ? fraction(-Wide{value}, timescale, timescale, flags, epoch) : *this;
}

std::weak_ordering operator<=>(const CMTime& x, const CMTime& y)
{
    const int rankOfX = rank(x);
    const int rankOfY = rank(y);
    if (rankOfX != rankOfY || rankOfX != 1)
        return rankOfX <=> rankOfY;
    if (x.epoch != y.epoch)
        return x.epoch <=> y.epoch;
    const Wide left = Wide{x.value} * y.timescale;
    const Wide right = Wide{y.value} * x.timescale;
    return left < right ? std::weak_ordering::less
                        : (right < left ? std::weak_ordering::greater : std::weak_ordering::equivalent);
}

} // namespace lamina
