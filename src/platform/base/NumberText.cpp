#include "platform/base/NumberText.h"

#include <array>
#include <charconv>
#include <cmath>

namespace lamina {

namespace {

/// The longest: all digits of the largest number, a point and decimals; or of the smallest, a thousand decimals.
using Digits = std::array<char, 1100>;

} // namespace

std::string decimalText(double value)
{
    Digits digits;
    const auto [end, error] =
        std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed);
    const std::string text(digits.data(), end);
    return std::isfinite(value) && text.find('.') == std::string::npos ? text + ".0" : text;
}

std::string fixedText(double value, int decimals)
{
    Digits digits;
    const auto [end, error] =
        std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed, decimals);
    return {digits.data(), end};
}

} // namespace lamina
