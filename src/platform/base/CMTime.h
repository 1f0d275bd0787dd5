#pragma once

#include <compare>
#include <cstdint>

namespace lamina {

/// Bits of the constants below.
using CMTimeFlags = std::uint32_t;
inline constexpr CMTimeFlags kCMTimeFlags_Valid = 1u << 0;
inline constexpr CMTimeFlags kCMTimeFlags_HasBeenRounded = 1u << 1;
inline constexpr CMTimeFlags kCMTimeFlags_PositiveInfinity = 1u << 2;
inline constexpr CMTimeFlags kCMTimeFlags_NegativeInfinity = 1u << 3;
inline constexpr CMTimeFlags kCMTimeFlags_Indefinite = 1u << 4;

/// The finest timescale.
inline constexpr std::int32_t kCMTimeMaxTimescale = 0x7fffffff;

/// A time or duration of media: value / timescale seconds, kept as a fraction so that frames add up exactly; or one of
/// the special times. The default one is invalid. A plain value, usable from any thread.
///
/// Rounding is to the nearest, halves away from zero, and is told by a flag that sums inherit. The epoch tells runs of
/// a timeline apart (a movie that starts over); durations have epoch 0.
struct CMTime {
    std::int64_t value = 0;
    std::int32_t timescale = 0;
    CMTimeFlags flags = 0;
    std::int64_t epoch = 0;

    /// value / timescale seconds. Invalid when the timescale is not positive.
    static constexpr CMTime make(std::int64_t value, std::int32_t timescale, std::int64_t epoch = 0)
    {
        return timescale > 0 ? CMTime{value, timescale, kCMTimeFlags_Valid, epoch} : CMTime{};
    }
    /// The nearest time in units of 1 / `timescale`. Where the value would not fit, the timescale is halved as often as
    /// needed, and beyond 2^63 seconds the time is infinite. NaN, or a timescale that is not positive: invalid.
    static CMTime makeWithSeconds(double seconds, std::int32_t timescale);

    /// What the flags say; only a valid time has any other property.
    constexpr bool isValid() const { return (flags & kCMTimeFlags_Valid) != 0; }
    constexpr bool isIndefinite() const { return isValid() && (flags & kCMTimeFlags_Indefinite) != 0; }
    constexpr bool isPositiveInfinity() const { return isValid() && (flags & kCMTimeFlags_PositiveInfinity) != 0; }
    constexpr bool isNegativeInfinity() const { return isValid() && (flags & kCMTimeFlags_NegativeInfinity) != 0; }
    constexpr bool hasBeenRounded() const { return isValid() && (flags & kCMTimeFlags_HasBeenRounded) != 0; }
    /// Valid and none of the special times.
    constexpr bool isNumeric() const
    {
        constexpr CMTimeFlags kSpecial =
            kCMTimeFlags_PositiveInfinity | kCMTimeFlags_NegativeInfinity | kCMTimeFlags_Indefinite;
        return isValid() && (flags & kSpecial) == 0 && timescale > 0;
    }

    /// In seconds; an infinity for the infinite times, NaN for the indefinite and invalid ones.
    double seconds() const;

    /// The same time in units of 1 / `newTimescale`, treated as in `makeWithSeconds`. Special times stay as they are.
    CMTime converted(std::int32_t newTimescale) const;

    /// In the least common multiple of the timescales, or the finest timescale where that is too large; halved while
    /// the value does not fit, and infinite beyond that. Special times, first match: one invalid, or infinities that
    /// cancel out: invalid; an infinity: infinite; one indefinite: indefinite. A sum takes the epoch that is not 0; a
    /// difference within one epoch is a duration. Any other mix of epochs is invalid.
    friend CMTime operator+(const CMTime& x, const CMTime& y);
    friend CMTime operator-(const CMTime& x, const CMTime& y);
    /// The other direction, in the same timescale.
    CMTime operator-() const;

    /// By the moment they name, whatever the timescale; a later epoch is later. Order: negative infinity, numeric
    /// times, positive infinity, indefinite, invalid; each special time equals itself.
    friend std::weak_ordering operator<=>(const CMTime& x, const CMTime& y);
    friend bool operator==(const CMTime& x, const CMTime& y) { return (x <=> y) == 0; }
};

inline constexpr CMTime kCMTimeInvalid{};
inline constexpr CMTime kCMTimeZero = CMTime::make(0, 1);
inline constexpr CMTime kCMTimeIndefinite{0, 0, kCMTimeFlags_Valid | kCMTimeFlags_Indefinite, 0};
inline constexpr CMTime kCMTimePositiveInfinity{0, 0, kCMTimeFlags_Valid | kCMTimeFlags_PositiveInfinity, 0};
inline constexpr CMTime kCMTimeNegativeInfinity{0, 0, kCMTimeFlags_Valid | kCMTimeFlags_NegativeInfinity, 0};

} // namespace lamina
