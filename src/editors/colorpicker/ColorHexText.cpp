#include "editors/colorpicker/ColorHexText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>

namespace lamina {

namespace {

constexpr double kMost = 255;
constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kDigits = "0123456789ABCDEF";

std::string_view withoutBlanks(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(kBlanks);
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/// Six digits of those given; empty where there are neither three nor six.
std::string sixDigits(std::string_view digits)
{
    if (digits.size() == 6)
        return std::string(digits);
    std::string doubled;
    if (digits.size() == 3)
        for (const char digit : digits)
            doubled.append(2, digit);
    return doubled;
}

} // namespace

std::string hexText(const UIColor& color)
{
    std::string text = "#";
    for (const double component : {color.red, color.green, color.blue}) {
        const double inRange = component > 0 ? std::min(component, 1.0) : 0; // also what is no number
        const auto step = static_cast<std::size_t>(std::lround(inRange * kMost));
        text += {kDigits[step / kDigits.size()], kDigits[step % kDigits.size()]};
    }
    return text;
}

std::optional<UIColor> colorFromHexText(std::string_view text)
{
    text = withoutBlanks(text);
    if (text.starts_with('#'))
        text.remove_prefix(1);
    const std::string digits = sixDigits(text);
    unsigned value = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value, 16);
    if (digits.empty() || error != std::errc() || stop != end)
        return std::nullopt;
    return UIColor{(value >> 16U) / kMost, (value >> 8U & 0xFFU) / kMost, (value & 0xFFU) / kMost, 1};
}

} // namespace lamina
