#pragma once

#include <algorithm>
#include <cstdint>

// The arithmetic of single samples, in integers so that every processor and every vector width gives the same bytes.
// Divisions by 255 go by shifts: J. F. Blinn, "Three Wrongs Make a Right", IEEE Computer Graphics and Applications 15,
// 1995. Compositing is source-over of T. Porter and T. Duff, "Compositing Digital Images", SIGGRAPH 1984. Luma is that
// of Rec. ITU-R BT.709.

namespace lamina {

/// A sample of [0, largest] in [0, 255], rounded to nearest. Greater values count as `largest`, which is not 0.
constexpr std::uint8_t to8Bits(std::uint32_t value, std::uint32_t largest)
{
    return static_cast<std::uint8_t>((std::min(value, largest) * std::uint64_t{255} + largest / 2) / largest);
}

/// round(value · 255 / 65535), which is value / 257 to the nearest.
constexpr std::uint8_t from16Bits(std::uint32_t value)
{
    return static_cast<std::uint8_t>((value + 128) / 257);
}

/// round(a·b/255), exact for a, b <= 255.
constexpr std::uint8_t mul255(unsigned a, unsigned b)
{
    const unsigned t = a * b + 128u;
    return static_cast<std::uint8_t>((t + (t >> 8)) >> 8);
}

/// A premultiplied colour component in its straight form. A clear pixel has no colour and gives 0; a component above
/// its alpha, which is not possible in a sound picture, saturates.
constexpr std::uint8_t unpremultiplied(std::uint32_t color, std::uint32_t alpha)
{
    if (alpha == 0)
        return 0;
    return static_cast<std::uint8_t>(std::min<std::uint32_t>(255, (color * 255 + alpha / 2) / alpha));
}

/// What red, green and blue weigh in luma.
inline constexpr double kLumaRed = 0.2126;
inline constexpr double kLumaGreen = 0.7152;
inline constexpr double kLumaBlue = 0.0722;

/// A value of [0, 1] in fixed point, to nearest; `one` stands for 1.
constexpr std::uint32_t fixedPoint(double value, std::uint32_t one)
{
    return static_cast<std::uint32_t>(value * one + 0.5);
}

/// The weights in fixed point of `Bits` bits; together they are one.
template <unsigned Bits>
struct FixedLuma {
    static constexpr std::uint32_t kOne = std::uint32_t{1} << Bits;
    static constexpr std::uint32_t kRed = fixedPoint(kLumaRed, kOne);
    static constexpr std::uint32_t kGreen = fixedPoint(kLumaGreen, kOne);
    static constexpr std::uint32_t kBlue = fixedPoint(kLumaBlue, kOne);
    static_assert(kRed + kGreen + kBlue == kOne);
};

/// Luma of values of any range, as far as doubles are exact.
constexpr double lumaOf(double r, double g, double b)
{
    return kLumaRed * r + kLumaGreen * g + kLumaBlue * b;
}

/// What is added before a sum of FixedLuma<24> is cut: a half, and more than the weights' own rounding takes away. Sums
/// are off by less than 2^-16, and none comes nearer than 2^-13 to a half without being one.
inline constexpr std::uint32_t kLumaHalf = (1u << 23) + 512u;

/// Luma of bytes, rounded to nearest with halves up: exactly.
constexpr std::uint8_t lumaOf(std::uint8_t r, std::uint8_t g, std::uint8_t b)
{
    using Luma = FixedLuma<24>;
    return static_cast<std::uint8_t>((r * Luma::kRed + g * Luma::kGreen + b * Luma::kBlue + kLumaHalf) >> 24);
}

/// Luma of bytes by weights on 16 bits: one in 2000 colours comes out one off, where the exact value is next to a half.
constexpr std::uint8_t quickLumaOf(std::uint8_t r, std::uint8_t g, std::uint8_t b)
{
    using Luma = FixedLuma<16>;
    return static_cast<std::uint8_t>((r * Luma::kRed + g * Luma::kGreen + b * Luma::kBlue + 32768u) >> 16);
}

/// Products of three values (colour, coverage, alpha) are taken on 16 bits, where 65535 stands for 1, and rounded to 8
/// bits once: the result is then off by little more than half a step.
constexpr std::uint16_t widened(std::uint8_t value)
{
    return static_cast<std::uint16_t>(value * 257u);
}

/// A value of [0, 1] on 16 bits.
constexpr std::uint16_t widened(double value)
{
    return static_cast<std::uint16_t>(std::clamp(value, 0.0, 1.0) * 65535 + 0.5);
}

/// a·b/65536, cut.
constexpr std::uint16_t mulHigh(unsigned a, unsigned b)
{
    return static_cast<std::uint16_t>((a * b) >> 16);
}

/// A value on 16 bits back on 8, rounded to nearest.
constexpr std::uint8_t narrowed(unsigned value)
{
    return static_cast<std::uint8_t>((value - (value >> 8) + 128u) >> 8);
}

/// Source-over on 16 bits: `source` and its `alpha` are premultiplied by all that scales them.
constexpr std::uint8_t over(unsigned source, unsigned alpha, std::uint8_t backdrop)
{
    return narrowed(std::min(65535u, source + mulHigh(widened(backdrop), 65535u - alpha)));
}

} // namespace lamina
