#include "cli/operations/OperationListing.h"

#include "cli/common/JsonText.h"
#include "cli/common/NamedValue.h"
#include "cli/operations/OperationParsing.h"
#include "cli/operations/Operations.h"
#include "gpu/core/TypedValue.h"

#include <nlohmann/json.hpp>
#include <utility>

namespace lamina {

std::string operationsAsText()
{
    std::string text = "Operations:\n";
    for (const Operation& operation : operations()) {
        text += listedHeading(std::string(operation.name) + argumentSyntax(operation), operation.about);
        for (const OperationArgument& argument : operation.arguments) {
            const TypedValue* fallback = argument.fallback ? &*argument.fallback : nullptr;
            text += listedValue(std::string(argument.name), argument.about, {}, fallback);
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
                {"name", argument.name}, {"kind", argument.kind.name}, {"about", argument.about}};
            if (argument.fallback)
                entry["default"] = formatValue(*argument.fallback);
            arguments.push_back(std::move(entry));
        }
        list.push_back({{"name", operation.name},
                        {"about", operation.about},
                        {"arguments", std::move(arguments)},
                        {"example", operation.example}});
    }
    return jsonText(list);
}

} // namespace lamina
