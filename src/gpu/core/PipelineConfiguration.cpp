#include "gpu/core/GPUImageFilterPipeline.h"
#include "platform/base/Result.h"
#include "platform/files/FileCauses.h"
#include "platform/files/FileReading.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace lamina {

namespace {

using Json = nlohmann::ordered_json;

/// A configuration names a handful of filters; more than this is not one.
constexpr std::size_t kMostBytes = std::size_t{1} << 20;

/// Frames of a chain are drawn one after the other; what no photo needs is a slip, or meant to keep the machine busy.
constexpr std::size_t kMostFilters = 64;

/// Looks a text over while it is parsed, and stops at the first thing that no configuration has: the tree of such a
/// text would take time and memory out of all proportion.
class Bounds : public Json::json_sax_t {
public:
    /// Why parsing has stopped.
    const std::string& fault() const { return m_fault; }

    bool null() override { return counted(); }
    bool boolean(bool) override { return counted(); }
    bool number_integer(std::int64_t) override { return counted(); }
    bool number_unsigned(std::uint64_t) override { return counted(); }
    bool number_float(double, const std::string&) override { return counted(); }
    bool string(std::string&) override { return counted(); }
    bool binary(Json::binary_t&) override { return counted(); }
    bool start_object(std::size_t) override { return opened(); }
    bool end_object() override { return closed(); }
    bool start_array(std::size_t) override { return opened(); }
    bool end_array() override { return closed(); }
    bool key(std::string& name) override
    {
        if (!m_keys.back().insert(name).second)
            return stopped("names \"" + name.substr(0, kShown) + "\" twice");
        return counted();
    }
    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception&) override
    {
        return stopped("is not JSON");
    }

private:
    static constexpr std::size_t kMostValues = 10'000;
    static constexpr std::size_t kDeepest = 16;
    static constexpr std::size_t kShown = 80;

    bool stopped(std::string fault)
    {
        m_fault = std::move(fault);
        return false;
    }
    bool counted() { return ++m_count <= kMostValues || stopped("has more values than a chain of filters"); }
    bool opened()
    {
        m_keys.emplace_back();
        return (m_keys.size() <= kDeepest || stopped("is nested deeper than a chain of filters")) && counted();
    }
    bool closed()
    {
        m_keys.pop_back();
        return true;
    }

    std::vector<std::set<std::string, std::less<>>> m_keys; ///< of what stands open
    std::size_t m_count = 0;
    std::string m_fault;
};

/// Empty: the text may be read. The parser takes a zero byte for the end.
std::string faultOf(const std::string& text)
{
    if (text.size() > kMostBytes)
        return cause::kTooLarge;
    if (text.find('\0') != std::string::npos)
        return "is not JSON";
    Bounds bounds;
    Json::sax_parse(text, &bounds);
    return bounds.fault();
}

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
    if (const std::string fault = faultOf(text); !fault.empty())
        return Error{name, fault};
    const Json json = Json::parse(text, nullptr, false);
    if (!json.is_object() || !json.contains("Filters") || !json["Filters"].is_array())
        return Error{name, "has no list \"Filters\""};
    if (json["Filters"].size() > kMostFilters)
        return Error{name, "has more than " + std::to_string(kMostFilters) + " filters"};
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
