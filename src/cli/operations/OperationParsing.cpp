#include "cli/operations/OperationParsing.h"

#include "cli/common/Messages.h"
#include "cli/common/NamedValue.h"
#include "cli/common/NearestName.h"
#include "gpu/core/TypedValue.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>
#include <variant>

namespace lamina {

namespace {

/// The texts of the arguments; a file's name keeps its commas.
std::vector<std::string_view> split(std::string_view text, const std::vector<OperationArgument>& arguments)
{
    std::vector<std::string_view> fields;
    for (;;) {
        const bool takesRest =
            fields.size() < arguments.size() && arguments[fields.size()].kind.type == ValueType::File;
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
    return {beginning(text), "there is no operation '" + beginning(name) + "'; " + didYouMean(name, names)};
}

std::string usage(const Operation& operation)
{
    const std::string name(operation.name);
    const std::string syntax = "usage: " + name + argumentSyntax(operation);
    return operation.example.empty() ? syntax : syntax + ", as in " + name + "=" + std::string(operation.example);
}

/// Nothing typed: the argument was left out.
Result<TypedValue> valueOf(const OperationArgument& argument, std::optional<std::string_view> typed)
{
    if (typed)
        return parseNamedValue(argument.name, *typed, argument.kind);
    if (argument.fallback)
        return *argument.fallback;
    return Error{std::string(argument.name), std::string(argument.name) + " is missing"};
}

} // namespace

std::vector<std::string> OperationStep::files() const
{
    std::vector<std::string> files;
    for (std::size_t i = 0; i < values.values.size(); ++i) {
        if (const auto* file = std::get_if<FilePath>(&values.values[i]))
            files.push_back(file->path);
    }
    return files;
}

std::string argumentSyntax(const Operation& operation)
{
    std::string syntax;
    std::string closing;
    for (const OperationArgument& argument : operation.arguments) {
        if (argument.fallback) {
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
        Result<TypedValue> value = valueOf(argument, i < fields.size() ? std::optional(fields[i]) : std::nullopt);
        if (!value)
            return Error{text, value.error().cause + "; " + usage(*found)};
        step.values.values.push_back(std::move(*value));
    }
    return step;
}

} // namespace lamina
