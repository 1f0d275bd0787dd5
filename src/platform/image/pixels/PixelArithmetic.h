#pragma once

#include <algorithm>
#include <cstdint>

namespace lamina {

/// round(a·b/255), exact for a, b <= 255.
constexpr std::uint8_t mul255(unsigned a, unsigned b)
{
    const unsigned t = a * b + 128u;
    return static_cast<std::uint8_t>((t + (t >> 8)) >> 8);
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

constexpr std::uint16_t mulHigh(unsigned a, unsigned b)
{
    return static_cast<std::uint16_t>((a * b) >> 16);
}

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
