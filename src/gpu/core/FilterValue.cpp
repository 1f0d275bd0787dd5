#include "gpu/core/FilterValue.h"

#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <span>
#include <vector>

namespace lamina {

namespace {

struct TypeName {
    std::string_view name;
    std::string_view syntax;
};

// In the order of the variant's alternatives.
constexpr std::array<TypeName, std::variant_size_v<FilterValue>> kTypes{{
    {"number", "NUMBER"},
    {"integer", "INTEGER"},
    {"flag", "0|1"},
    {"point", "X,Y"},
    {"size", "WxH"},
    {"color", "R,G,B"},
    {"vector", "A,B,C,D"},
    {"matrix3", "A,B,C;D,E,F;G,H,I"},
    {"matrix4", "A,B,C,D;E,F,G,H;I,J,K,L;M,N,O,P"},
    {"text", "TEXT"},
}};

template <class Number>
std::optional<Number> wholeNumber(std::string_view text)
{
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    if constexpr (std::is_floating_point_v<Number>) {
        if (!std::isfinite(value))
            return std::nullopt;
    }
    return value;
}

/// Exactly as many numbers as `values` has places, each but the first after the separator of its place.
template <class Number>
bool readNumbers(std::string_view text, std::span<Number> values, const auto& separatorBefore)
{
    for (std::size_t i = 0; i < values.size(); ++i) {
        const bool last = i + 1 == values.size();
        const std::size_t end = last ? text.size() : text.find(separatorBefore(i + 1));
        if (end == std::string_view::npos)
            return false;
        const std::optional<Number> value = wholeNumber<Number>(text.substr(0, end));
        if (!value)
            return false;
        values[i] = *value;
        text.remove_prefix(last ? end : end + 1);
    }
    return true;
}

constexpr auto kCommas = [](std::size_t) { return ','; };

template <class Vector, std::size_t kColumns, std::size_t kPlaces>
std::optional<FilterValue> readFloats(std::string_view text)
{
    static_assert(sizeof(Vector) == kPlaces * sizeof(float));
    std::array<float, kPlaces> floats{};
    const auto rows = [](std::size_t place) { return place % kColumns == 0 ? ';' : ','; };
    if (!readNumbers<float>(text, floats, rows))
        return std::nullopt;
    Vector vector;
    float* to = nullptr;
    if constexpr (kPlaces == kColumns)
        to = &vector.one;
    else
        to = &vector.one.one;
    for (std::size_t i = 0; i < kPlaces; ++i)
        to[i] = floats[i];
    return vector;
}

struct Reader {
    std::string_view text;

    std::optional<FilterValue> operator()(float) const { return as(wholeNumber<float>(text)); }
    std::optional<FilterValue> operator()(int) const { return as(wholeNumber<int>(text)); }
    std::optional<FilterValue> operator()(bool) const
    {
        return text == "0" || text == "1" ? std::optional<FilterValue>(text == "1") : std::nullopt;
    }
    std::optional<FilterValue> operator()(const CGPoint&) const
    {
        std::array<double, 2> xy{};
        return readNumbers<double>(text, xy, kCommas) ? std::optional<FilterValue>(CGPoint{xy[0], xy[1]})
                                                      : std::nullopt;
    }
    std::optional<FilterValue> operator()(const CGSize&) const
    {
        std::array<double, 2> wh{};
        const bool read = readNumbers<double>(text, wh, [](std::size_t) { return 'x'; });
        return read ? std::optional<FilterValue>(CGSize{wh[0], wh[1]}) : std::nullopt;
    }
    std::optional<FilterValue> operator()(const GPUVector3&) const { return readFloats<GPUVector3, 3, 3>(text); }
    std::optional<FilterValue> operator()(const GPUVector4&) const { return readFloats<GPUVector4, 4, 4>(text); }
    std::optional<FilterValue> operator()(const GPUMatrix3x3&) const { return readFloats<GPUMatrix3x3, 3, 9>(text); }
    std::optional<FilterValue> operator()(const GPUMatrix4x4&) const { return readFloats<GPUMatrix4x4, 4, 16>(text); }
    std::optional<FilterValue> operator()(const std::string&) const { return std::string(text); }

    template <class Value>
    static std::optional<FilterValue> as(const std::optional<Value>& value)
    {
        return value ? std::optional<FilterValue>(*value) : std::nullopt;
    }
};

template <class Number>
std::string digits(Number value)
{
    std::array<char, 64> text{};
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), value);
    return {text.data(), end};
}

std::string floats(const float* values, std::size_t columns, std::size_t places)
{
    std::string text;
    for (std::size_t i = 0; i < places; ++i) {
        if (i > 0)
            text += i % columns == 0 ? ';' : ',';
        text += digits(values[i]);
    }
    return text;
}

struct Writer {
    std::string operator()(float value) const { return digits(value); }
    std::string operator()(int value) const { return digits(value); }
    std::string operator()(bool value) const { return value ? "1" : "0"; }
    std::string operator()(const CGPoint& value) const { return digits(value.x) + ',' + digits(value.y); }
    std::string operator()(const CGSize& value) const { return digits(value.width) + 'x' + digits(value.height); }
    std::string operator()(const GPUVector3& value) const { return floats(&value.one, 3, 3); }
    std::string operator()(const GPUVector4& value) const { return floats(&value.one, 4, 4); }
    std::string operator()(const GPUMatrix3x3& value) const { return floats(&value.one.one, 3, 9); }
    std::string operator()(const GPUMatrix4x4& value) const { return floats(&value.one.one, 4, 16); }
    std::string operator()(const std::string& value) const { return value; }
};

} // namespace

std::string_view filterValueTypeName(const FilterValue& value)
{
    return kTypes[value.index()].name;
}

std::string_view filterValueSyntax(const FilterValue& value)
{
    return kTypes[value.index()].syntax;
}

Result<FilterValue> parseFilterValue(std::string_view text, const FilterValue& like)
{
    std::optional<FilterValue> value = std::visit(Reader{text}, like);
    if (value)
        return std::move(*value);
    return Error{std::string(text), "expected " + std::string(filterValueSyntax(like))};
}

std::string formatFilterValue(const FilterValue& value)
{
    return std::visit(Writer{}, value);
}

} // namespace lamina
