#include "gpu/core/TypedValue.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <optional>
#include <type_traits>
#include <utility>

namespace lamina {

namespace {

// In the order of the alternatives.
constexpr std::array kKinds{kind::kNumber, kind::kInteger, kind::kFlag,    kind::kPoint,     kind::kSize,
                            kind::kColor,  kind::kVector,  kind::kMatrix3, kind::kMatrix4,   kind::kText,
                            kind::kCount,  kind::kPoints,  kind::kFile,    kind::kRectangle, kind::kTransform};
static_assert(kKinds.size() + 1 == std::variant_size_v<TypedValue>, "choices bring theirs");

template <class Number>
std::optional<Number> numberIn(std::string_view text, const ValueRange& range)
{
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    const auto number = static_cast<double>(value);
    return std::isfinite(number) && range.contains(number) ? std::optional(value) : std::nullopt;
}

/// Geometry is of double precision, what goes to the GPU of single.
template <class Value>
using Component = std::conditional_t<std::is_same_v<Value, CGPoint> || std::is_same_v<Value, CGSize> ||
                                         std::is_same_v<Value, CGRect> || std::is_same_v<Value, CGAffineTransform>,
                                     double, float>;

/// A type that is made of numbers, as these numbers.
template <class Value>
using Components = std::array<Component<Value>, sizeof(Value) / sizeof(Component<Value>)>;

/// What stands between the number at a place (from 1) and the one before.
template <class Value>
constexpr char separatorBefore(std::size_t place)
{
    // Colours and matrices of three columns have a multiple of 3 numbers; what is shorter than a row never ends one.
    constexpr std::size_t kColumns = std::tuple_size_v<Components<Value>> % 3 == 0 ? 3 : 4;
    if constexpr (std::is_same_v<Value, CGSize>)
        return 'x';
    if constexpr (std::is_same_v<Value, CGAffineTransform>)
        return ',';
    return place % kColumns == 0 ? ';' : ',';
}

/// By way of double precision: what is too small for single precision is 0, what is too large is no number.
template <class Value>
std::optional<TypedValue> readComponents(std::string_view text, const ValueRange& range)
{
    Components<Value> components{};
    for (std::size_t i = 0; i < components.size(); ++i) {
        const bool last = i + 1 == components.size();
        const std::size_t end = last ? text.size() : text.find(separatorBefore<Value>(i + 1));
        if (end == std::string_view::npos)
            return std::nullopt;
        const auto number = numberIn<double>(text.substr(0, end), range);
        if (!number || std::abs(*number) > std::numeric_limits<Component<Value>>::max())
            return std::nullopt;
        components[i] = static_cast<Component<Value>>(*number);
        text.remove_prefix(last ? end : end + 1);
    }
    return std::bit_cast<Value>(components);
}

std::optional<TypedValue> readPoints(std::string_view text, const ValueRange& range)
{
    std::vector<CGPoint> points;
    for (const std::string_view field : fieldsOf(text, ';')) {
        const std::optional<TypedValue> point = readComponents<CGPoint>(field, range);
        if (!point)
            return std::nullopt;
        points.push_back(std::get<CGPoint>(*point));
    }
    return points;
}

std::optional<TypedValue> readChoice(std::string_view text, const ValueKind& kind)
{
    const std::vector<std::string_view> names = fieldsOf(kind.syntax, '|');
    const auto found = std::ranges::find(names, text);
    if (found == names.end())
        return std::nullopt;
    return NamedChoice{&kind, static_cast<int>(found - names.begin())};
}

template <class Value>
std::optional<TypedValue> read(std::string_view text, const ValueKind& kind)
{
    if constexpr (std::is_same_v<Value, std::string>) {
        return std::string(text);
    } else if constexpr (std::is_same_v<Value, FilePath>) {
        return text.empty() ? std::nullopt : std::optional<TypedValue>(FilePath{std::string(text)});
    } else if constexpr (std::is_same_v<Value, NamedChoice>) {
        return readChoice(text, kind);
    } else if constexpr (std::is_same_v<Value, std::vector<CGPoint>>) {
        return readPoints(text, kind.range);
    } else if constexpr (std::is_same_v<Value, bool>) {
        return text == "0" || text == "1" ? std::optional<TypedValue>(text == "1") : std::nullopt;
    } else if constexpr (std::is_integral_v<Value>) {
        const std::optional<Value> number = numberIn<Value>(text, kind.range);
        return number ? std::optional<TypedValue>(*number) : std::nullopt;
    } else {
        return readComponents<Value>(text, kind.range);
    }
}

using Reader = std::optional<TypedValue> (*)(std::string_view text, const ValueKind& kind);

template <std::size_t... kIndices>
constexpr std::array<Reader, sizeof...(kIndices)> readersOf(std::index_sequence<kIndices...>)
{
    return {&read<std::variant_alternative_t<kIndices, TypedValue>>...};
}
constexpr auto kReaders = readersOf(std::make_index_sequence<std::variant_size_v<TypedValue>>());

template <class Number>
std::string digits(Number value)
{
    std::array<char, 64> text{};
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), value);
    return {text.data(), end};
}

template <class Value>
std::string write(const Value& value)
{
    if constexpr (std::is_same_v<Value, std::string>) {
        return value;
    } else if constexpr (std::is_same_v<Value, FilePath>) {
        return value.path;
    } else if constexpr (std::is_same_v<Value, NamedChoice>) {
        return std::string(fieldsOf(value.kind->syntax, '|').at(static_cast<std::size_t>(value.index)));
    } else if constexpr (std::is_same_v<Value, std::vector<CGPoint>>) {
        std::string text;
        for (const CGPoint& point : value)
            text += (text.empty() ? "" : ";") + write(point);
        return text;
    } else if constexpr (std::is_integral_v<Value>) {
        return digits(static_cast<std::int64_t>(value));
    } else {
        std::string text;
        const auto components = std::bit_cast<Components<Value>>(value);
        for (std::size_t i = 0; i < components.size(); ++i)
            text += (i > 0 ? std::string(1, separatorBefore<Value>(i)) : "") + digits(components[i]);
        return text;
    }
}

std::string shortDigits(double value)
{
    return digits(static_cast<float>(value));
}

} // namespace

std::vector<std::string_view> fieldsOf(std::string_view text, char separator)
{
    std::vector<std::string_view> fields;
    for (;;) {
        const std::size_t end = text.find(separator);
        fields.push_back(text.substr(0, end));
        if (end == std::string_view::npos)
            return fields;
        text.remove_prefix(end + 1);
    }
}

std::string formatRange(const ValueRange& range)
{
    const bool low = std::isfinite(range.minimum);
    const bool high = std::isfinite(range.maximum);
    if (low && high)
        return shortDigits(range.minimum) + " to " + shortDigits(range.maximum);
    if (low)
        return range.minimum == kAboveZero ? "above 0" : "from " + shortDigits(range.minimum);
    return high ? "up to " + shortDigits(range.maximum) : "";
}

const ValueKind& kindOf(const TypedValue& value)
{
    if (const auto* choice = std::get_if<NamedChoice>(&value))
        return *choice->kind;
    return kKinds[value.index()];
}

Result<TypedValue> parseValue(std::string_view text, const ValueKind& kind)
{
    std::optional<TypedValue> value = kReaders[static_cast<std::size_t>(kind.type)](text, kind);
    if (value)
        return std::move(*value);
    return Error{std::string(text), "expected " + std::string(kind.syntax)};
}

std::string formatValue(const TypedValue& value)
{
    return std::visit([](const auto& alternative) { return write(alternative); }, value);
}

Result<double> parseNumber(std::string_view text, const ValueRange& range)
{
    if (const std::optional<double> number = numberIn<double>(text, range))
        return *number;
    const std::string told = formatRange(range);
    const bool bothEnds = std::isfinite(range.minimum) && std::isfinite(range.maximum);
    return Error{std::string(text), "expected a number" + (told.empty() ? "" : (bothEnds ? " from " : " ") + told)};
}

} // namespace lamina
