#include "cli/common/JsonText.h"

#include <nlohmann/json.hpp>

namespace lamina {

std::string jsonText(const nlohmann::ordered_json& json, int indent)
{
    return json.dump(indent, ' ', true, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

} // namespace lamina
