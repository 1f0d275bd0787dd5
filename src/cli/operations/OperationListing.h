#pragma once

#include <string>

namespace lamina {

/// All operations with their arguments and units, for people.
std::string operationsAsText();

/// The same for programs: an array of {"name", "about", "arguments": [{"name", "kind", "about", "default" where it may
/// be left out}], "example"}.
std::string operationsAsJson();

} // namespace lamina
