#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace lamina {

/// JSON as it is printed, with its last line break; `indent` -1: on one line. Letters beyond ASCII are escaped, so that
/// nothing in a name controls a terminal; bytes that are no UTF-8 are replaced by U+FFFD.
std::string jsonText(const nlohmann::ordered_json& json, int indent = 2);

} // namespace lamina
