#include "cli/Numbers.h"

#include <charconv>
#include <cmath>

namespace lamina {

namespace {

std::optional<double> parseNumber(std::string_view text)
{
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value))
        return std::nullopt;
    return value;
}

} // namespace

std::optional<std::vector<double>> parseNumbers(std::string_view text, std::size_t count)
{
    std::vector<double> numbers;
    for (;;) {
        const std::size_t comma = text.find(',');
        const std::optional<double> number = parseNumber(text.substr(0, comma));
        if (!number)
            return std::nullopt;
        numbers.push_back(*number);
        if (comma == std::string_view::npos)
            break;
        text.remove_prefix(comma + 1);
    }
    if (numbers.size() != count)
        return std::nullopt;
    return numbers;
}

} // namespace lamina
