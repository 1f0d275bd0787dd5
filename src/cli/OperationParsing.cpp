#include "cli/OperationParsing.h"

#include "cli/Messages.h"
#include "cli/NearestName.h"
#include "cli/Numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>

namespace lamina {

namespace {

using Value = OperationValues::Value;

std::optional<double> parseSingle(std::string_view text)
{
    const auto number = parseNumbers(text, 1);
    if (!number || std::abs(number->front()) > std::numeric_limits<float>::max())
        return std::nullopt;
    return number->front();
}

std::optional<double> parsePositive(std::string_view text)
{
    const auto number = parseSingle(text);
    return number && *number > 0 ? number : std::nullopt;
}

std::optional<Value> parseInteger(std::string_view text, long low, long high)
{
    long value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value < low || value > high)
        return std::nullopt;
    return value;
}

std::optional<Value> parseSize(std::string_view text)
{
    const std::size_t cross = text.find('x');
    if (cross == std::string_view::npos)
        return std::nullopt;
    const auto width = parsePositive(text.substr(0, cross));
    const auto height = parsePositive(text.substr(cross + 1));
    if (!width || !height)
        return std::nullopt;
    return CGSize{*width, *height};
}

std::optional<Value> parseValue(ArgumentKind kind, std::string_view text)
{
    switch (kind) {
    case ArgumentKind::Number:
        return parseSingle(text);
    case ArgumentKind::Positive:
        return parsePositive(text);
    case ArgumentKind::Whole:
        return parseInteger(text, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max());
    case ArgumentKind::Count:
        return parseInteger(text, 1, std::numeric_limits<std::uint32_t>::max());
    case ArgumentKind::Flag:
        if (text != "0" && text != "1")
            return std::nullopt;
        return text == "1";
    case ArgumentKind::Size:
        return parseSize(text);
    case ArgumentKind::Picture:
        if (text.empty())
            return std::nullopt;
        return std::string(text);
    }
    return std::nullopt;
}

std::string expectation(ArgumentKind kind)
{
    switch (kind) {
    case ArgumentKind::Number:
        return "a number";
    case ArgumentKind::Positive:
        return "a number above 0";
    case ArgumentKind::Whole:
        return "a whole number";
    case ArgumentKind::Count:
        return "a whole number above 0";
    case ArgumentKind::Flag:
        return "0 or 1";
    case ArgumentKind::Size:
        return "two numbers above 0 with an x between";
    case ArgumentKind::Picture:
        return "a file";
    }
    return {};
}

/// The texts of the arguments; a picture's name keeps its commas.
std::vector<std::string_view> split(std::string_view text, const std::vector<OperationArgument>& arguments)
{
    std::vector<std::string_view> fields;
    for (;;) {
        const bool takesRest =
            fields.size() < arguments.size() && arguments[fields.size()].kind == ArgumentKind::Picture;
        const std::size_t comma = takesRest ? std::string_view::npos : text.find(',');
        fields.push_back(text.substr(0, comma));
        if (comma == std::string_view::npos)
            return fields;
        text.remove_prefix(comma + 1);
    }
}

Error unknownOperation(const std::string& text, std::string_view name)
{
    if (name.empty())
        return {text.empty() ? "op" : beginning(text),
                "an operation is NAME or NAME=ARGUMENTS; lamina op --help lists them"};
    std::vector<std::string_view> names;
    for (const Operation& operation : operations())
        names.push_back(operation.name);
    return {beginning(text), "there is no operation '" + beginning(name) + "'; did you mean " +
                                 std::string(nearestName(name, names)) + "?"};
}

std::string usage(const Operation& operation)
{
    const std::string name(operation.name);
    const std::string syntax = "usage: " + name + argumentSyntax(operation);
    return operation.example.empty() ? syntax : syntax + ", as in " + name + "=" + std::string(operation.example);
}

} // namespace

std::string argumentSyntax(const Operation& operation)
{
    std::string syntax;
    std::string closing;
    for (const OperationArgument& argument : operation.arguments) {
        if (!argument.fallback.empty()) {
            syntax += "[";
            closing += "]";
        }
        syntax += &argument == &operation.arguments.front() ? "=" : ",";
        syntax += argument.name;
    }
    return syntax + closing;
}

Result<OperationStep> parseOperation(const std::string& text)
{
    const std::string_view whole = text;
    const std::size_t equals = whole.find('=');
    const std::string_view name = whole.substr(0, equals);
    const auto found = std::ranges::find(operations(), name, &Operation::name);
    if (found == operations().end())
        return unknownOperation(text, name);

    std::vector<std::string_view> fields;
    if (equals != std::string_view::npos)
        fields = split(whole.substr(equals + 1), found->arguments);
    if (fields.size() > found->arguments.size())
        return Error{text, "too many arguments; " + usage(*found)};

    OperationStep step{text, &*found, {}};
    for (std::size_t i = 0; i < found->arguments.size(); ++i) {
        const OperationArgument& argument = found->arguments[i];
        if (i >= fields.size() && argument.fallback.empty())
            return Error{text, std::string(argument.name) + " is missing; " + usage(*found)};
        const std::string_view field = i < fields.size() ? fields[i] : argument.fallback;
        std::optional<Value> value = parseValue(argument.kind, field);
        if (!value) {
            return Error{text, std::string(argument.name) + " must be " + expectation(argument.kind) + ", not '" +
                                   beginning(field) + "'; " + usage(*found)};
        }
        step.values.append(std::move(*value));
    }
    return step;
}

} // namespace lamina
