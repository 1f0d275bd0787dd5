#include "cli/OperationListing.h"

#include "cli/OperationParsing.h"

#include <nlohmann/json.hpp>

namespace lamina {

namespace {

const char* kindName(ArgumentKind kind)
{
    switch (kind) {
    case ArgumentKind::Number:
        return "number";
    case ArgumentKind::Positive:
        return "positive";
    case ArgumentKind::Whole:
        return "integer";
    case ArgumentKind::Count:
        return "count";
    case ArgumentKind::Flag:
        return "flag";
    case ArgumentKind::Size:
        return "size";
    case ArgumentKind::Picture:
        return "picture";
    }
    return "";
}

} // namespace

std::string operationsAsText()
{
    std::string text = "Operations:\n";
    for (const Operation& operation : operations()) {
        text += "  " + std::string(operation.name) + argumentSyntax(operation) + "\n";
        text += "      " + std::string(operation.about) + ".\n";
        for (const OperationArgument& argument : operation.arguments) {
            text += "      " + std::string(argument.name) + ": " + std::string(argument.about);
            if (!argument.fallback.empty())
                text += " [" + std::string(argument.fallback) + "]";
            text += "\n";
        }
    }
    return text;
}

std::string operationsAsJson()
{
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const Operation& operation : operations()) {
        nlohmann::ordered_json arguments = nlohmann::ordered_json::array();
        for (const OperationArgument& argument : operation.arguments) {
            nlohmann::ordered_json entry{
                {"name", argument.name}, {"kind", kindName(argument.kind)}, {"about", argument.about}};
            if (!argument.fallback.empty())
                entry["default"] = argument.fallback;
            arguments.push_back(std::move(entry));
        }
        list.push_back({{"name", operation.name},
                        {"about", operation.about},
                        {"arguments", std::move(arguments)},
                        {"example", operation.example}});
    }
    return list.dump(2) + "\n";
}

} // namespace lamina
