#pragma once

#include "gpu/core/TypedValue.h"
#include "platform/base/Result.h"

#include <string>
#include <string_view>

namespace lamina {

/// Reads what was typed for an argument or a property. The error's subject is `name`; its cause, which may be
/// continued, goes "intensity must be a number in UNIT, not 'full'".
Result<TypedValue> parseNamedValue(std::string_view name, std::string_view text, const ValueKind& kind,
                                   std::string_view unit = {});

/// The heading of an operation's or a filter's entry in a list for people: how it is written, and one line about it.
std::string listedHeading(const std::string& syntax, std::string_view about);

/// One value of such an entry: how it is written, what it means, on a line of their own further details, and the value
/// that holds when none is given. What is empty or null is left out.
std::string listedValue(const std::string& syntax, std::string_view about, const std::string& details,
                        const TypedValue* fallback);

} // namespace lamina
