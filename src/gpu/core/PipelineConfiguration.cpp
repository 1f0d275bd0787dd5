#include "gpu/core/GPUImageFilterPipeline.h"
#include "platform/base/Result.h"
#include "platform/files/FileReading.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

namespace lamina {

namespace {

using Json = nlohmann::ordered_json;

/// A configuration names a handful of filters; more than this is not one.
constexpr std::size_t kMostBytes = std::size_t{1} << 20;

bool readValues(const Json& json, std::vector<std::string>& values)
{
    const auto take = [&](const Json& value) {
        if (value.is_string())
            values.push_back(value.get<std::string>());
        return value.is_string();
    };
    if (!json.is_array())
        return take(json);
    return std::all_of(json.begin(), json.end(), take);
}

/// Empty: it was understood.
std::string readFilter(const Json& json, PipelineConfiguration::Filter& filter)
{
    if (!json.is_object() || !json.contains("FilterName") || !json["FilterName"].is_string())
        return "has no \"FilterName\"";
    filter.filterName = json["FilterName"].get<std::string>();
    if (!json.contains("Attributes"))
        return {};
    if (!json["Attributes"].is_object())
        return "\"Attributes\" is not an object";
    for (const auto& [selector, value] : json["Attributes"].items()) {
        PipelineConfiguration::Attribute& attribute = filter.attributes.emplace_back();
        attribute.selector = selector;
        if (!readValues(value, attribute.values) || (value.is_array() && !value.empty() && !selector.ends_with(':')))
            return "the value of \"" + selector + "\" is not a text";
    }
    return {};
}

} // namespace

Result<PipelineConfiguration> PipelineConfiguration::fromJson(const std::string& text, const std::string& name)
{
    const Json json = Json::parse(text, nullptr, false);
    if (json.is_discarded())
        return Error{name, "is not JSON"};
    if (!json.is_object() || !json.contains("Filters") || !json["Filters"].is_array())
        return Error{name, "has no list \"Filters\""};
    PipelineConfiguration configuration;
    for (const Json& entry : json["Filters"]) {
        Filter filter;
        const std::string fault = readFilter(entry, filter);
        if (!fault.empty())
            return Error{name, "filter " + std::to_string(configuration.filters.size() + 1) + ": " + fault};
        configuration.filters.push_back(std::move(filter));
    }
    return configuration;
}

Result<PipelineConfiguration> PipelineConfiguration::fromFile(const std::string& path)
{
    const Result<std::vector<std::uint8_t>> bytes = readSmallInput(path, kMostBytes);
    if (!bytes)
        return bytes.error();
    return fromJson({bytes->begin(), bytes->end()}, path);
}

} // namespace lamina
