#include "cli/common/NamedValue.h"

#include "cli/common/Messages.h"

namespace lamina {

Result<TypedValue> parseNamedValue(std::string_view name, std::string_view text, const ValueKind& kind,
                                   std::string_view unit)
{
    Result<TypedValue> value = parseValue(text, kind);
    if (value)
        return value;
    const std::string in = unit.empty() ? "" : " in " + std::string(unit);
    return Error{std::string(name),
                 std::string(name) + " must be " + std::string(kind.expected) + in + ", not '" + beginning(text) + "'"};
}

std::string listedHeading(const std::string& syntax, std::string_view about)
{
    return "  " + syntax + "\n      " + std::string(about) + ".\n";
}

std::string listedValue(const std::string& syntax, std::string_view about, const std::string& details,
                        const TypedValue* fallback)
{
    return "      " + syntax + ": " + std::string(about) + (details.empty() ? "" : "\n          " + details) +
           (fallback ? " [" + formatValue(*fallback) + "]" : "") + "\n";
}

} // namespace lamina
