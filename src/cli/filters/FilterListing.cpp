#include "cli/filters/FilterListing.h"

#include "cli/common/JsonText.h"
#include "cli/common/NamedValue.h"
#include "cli/filters/FilterParsing.h"
#include "gpu/core/TypedValue.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <span>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace lamina {

namespace {

using Json = nlohmann::ordered_json;

std::string capitalised(std::string text)
{
    if (!text.empty())
        text.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(text.front())));
    return text;
}

/// "base, overlay"; empty for a filter of one picture.
std::string inputNames(const FilterDescription& filter)
{
    std::string names;
    for (const std::string& name : filter.inputNames)
        names += (names.empty() ? "" : ", ") + name;
    return names;
}

bool isPremultiplied(const FilterDescription& filter)
{
    return filter.alphaForm == AlphaForm::Premultiplied;
}

/// One line, without a full stop.
std::string helpOf(const FilterDescription& filter)
{
    return filter.help + (isPremultiplied(filter) ? "; works on premultiplied colours" : "");
}

std::string argumentTypes(const FilterSelector& selector)
{
    std::string types;
    for (const TypedValue& argument : selector.arguments)
        types += (types.empty() ? "" : ", ") + std::string(kindOf(argument).name);
    return types;
}

/// The arguments that change nothing: "0,1,1".
std::string startOf(const FilterSelector& selector)
{
    std::string start;
    for (const TypedValue& argument : selector.arguments)
        start += (start.empty() ? "" : ",") + formatValue(argument);
    return start;
}

std::string propertyAsText(const FilterProperty& property)
{
    const ValueKind& kind = kindOf(property.fallback);
    std::string details(kind.name);
    for (const std::string& part : {formatRange(property.range), property.unit})
        details += part.empty() ? "" : ", " + part;
    return listedValue(property.name + "=" + std::string(kind.syntax), property.help, details,
                       formatValue(property.fallback).empty() ? nullptr : &property.fallback);
}

std::string selectorAsText(const FilterSelector& selector)
{
    std::string syntax = selector.name;
    for (const TypedValue& argument : selector.arguments)
        syntax += (&argument == &selector.arguments.front() ? "=" : ",") + std::string(kindOf(argument).syntax);
    const std::string types = argumentTypes(selector);
    return listedValue(syntax, selector.help, types.empty() ? "" : types + " [" + startOf(selector) + "]", nullptr);
}

/// "number", "list of numbers", "record of x, y" or "list of records of x, y".
std::string typeOf(const FilterResult& result)
{
    std::string type = std::string(result.isList ? "list of " : "") + (result.fields.empty() ? "number" : "record") +
                       (result.isList ? "s" : "");
    for (const std::string& field : result.fields)
        type += (&field == &result.fields.front() ? " of " : ", ") + field;
    return type;
}

std::string resultAsText(const FilterResult& result)
{
    return listedValue("reports " + result.name, result.help,
                       typeOf(result) + (result.unit.empty() ? "" : ", " + result.unit), nullptr);
}

std::string entryAsText(const FilterDescription& filter)
{
    const std::string inputs = filter.isGenerator   ? " (needs no picture)"
                               : filter.inputs == 1 ? ""
                                                    : " (inputs: " + inputNames(filter) + ")";
    std::string text = listedHeading(filter.className + inputs, helpOf(filter));
    for (const FilterProperty& property : filter.properties)
        text += propertyAsText(property);
    for (const FilterSelector& selector : filter.selectors)
        text += selectorAsText(selector);
    for (const FilterResult& result : filter.reporting.results)
        text += resultAsText(result);
    return text;
}

std::string exampleOf(const FilterDescription& filter)
{
    std::string example = "lamina filter " + filter.className;
    if (filter.isGenerator)
        example += " --size 640x480";
    for (int i = 1; i <= filter.inputs && !filter.isGenerator; ++i)
        example += filter.inputs == 1 ? " -i in.png" : " -i in" + std::to_string(i) + ".png";
    if (!filter.properties.empty()) {
        const FilterProperty& property = filter.properties.front();
        const std::string setting = property.name + "=" + exampleOf(property.fallback);
        const bool quoted = setting.find_first_of("; ") != std::string::npos;
        example += " --set " + (quoted ? "'" + setting + "'" : setting);
    } else if (!filter.selectors.empty()) {
        example += " --set " + argumentExample(filter.selectors.front());
    }
    return example + (filter.reporting.results.empty() ? " -o out.png" : " --report");
}

Json defaultAsJson(const TypedValue& value)
{
    if (const bool* flag = std::get_if<bool>(&value))
        return *flag;
    const std::string text = formatValue(value);
    // By way of the text, so that 0.2 stays 0.2.
    return std::holds_alternative<float>(value) || std::holds_alternative<int>(value) ? Json::parse(text) : Json(text);
}

Json propertyAsJson(const FilterProperty& property)
{
    Json entry{{"name", property.name},
               {"type", kindOf(property.fallback).name},
               {"syntax", kindOf(property.fallback).syntax},
               {"default", defaultAsJson(property.fallback)}};
    if (std::isfinite(property.range.minimum))
        entry["minimum"] = property.range.minimum;
    if (std::isfinite(property.range.maximum))
        entry["maximum"] = property.range.maximum;
    if (!property.unit.empty())
        entry["unit"] = property.unit;
    entry["about"] = property.help;
    if (const std::string selector = property.selector(); !selector.empty())
        entry["pipeline"] = selector;
    return entry;
}

Json resultAsJson(const FilterResult& result)
{
    Json entry{{"name", result.name}, {"list", result.isList}};
    if (!result.fields.empty())
        entry["fields"] = result.fields;
    if (!result.unit.empty())
        entry["unit"] = result.unit;
    entry["about"] = result.help;
    return entry;
}

Json numberAsJson(double value)
{
    constexpr double kMostExact = 1ULL << 53;
    const bool whole = std::abs(value) < kMostExact && value == std::trunc(value);
    return std::isnan(value) ? Json() : whole ? Json(static_cast<std::int64_t>(value)) : Json(value);
}

/// The fields of one entry.
Json valuesAsJson(const FilterResult& result, std::span<const double> values)
{
    if (result.fields.empty())
        return numberAsJson(values.front());
    Json entry = Json::object();
    for (std::size_t i = 0; i < result.fields.size(); ++i)
        entry[result.fields[i]] = numberAsJson(values[i]);
    return entry;
}

Json entryAsJson(const FilterDescription& filter)
{
    Json properties = Json::array();
    for (const FilterProperty& property : filter.properties)
        properties.push_back(propertyAsJson(property));
    Json selectors = Json::array();
    for (const FilterSelector& selector : filter.selectors) {
        Json arguments = Json::array();
        for (const TypedValue& argument : selector.arguments)
            arguments.push_back(kindOf(argument).name);
        selectors.push_back({{"name", selector.name},
                             {"arguments", std::move(arguments)},
                             {"default", startOf(selector)},
                             {"about", selector.help}});
    }
    Json results = Json::array();
    for (const FilterResult& result : filter.reporting.results)
        results.push_back(resultAsJson(result));
    return {{"name", filter.className},
            {"family", filter.family},
            {"inputs", filter.inputs},
            {"inputNames", filter.inputNames},
            {"generator", filter.isGenerator},
            {"premultiplied", isPremultiplied(filter)},
            {"about", filter.help},
            {"properties", std::move(properties)},
            {"selectors", std::move(selectors)},
            {"results", std::move(results)},
            {"sample", settingTexts(filter.sample)}};
}

/// A bar would end the cell.
std::string inTable(std::string_view text)
{
    std::string escaped;
    for (const char letter : text)
        escaped += letter == '|' ? "\\|" : std::string(1, letter);
    return escaped;
}

std::string propertyAsMarkdown(const FilterProperty& property)
{
    const ValueKind& kind = kindOf(property.fallback);
    return "| `" + property.name + "` | " + std::string(kind.name) + " `" + inTable(kind.syntax) + "` | `" +
           exampleOf(property.fallback) + "` | " + formatRange(property.range) + " | " + property.unit + " | " +
           property.help + " |\n";
}

std::string selectorsAsMarkdown(const FilterDescription& filter)
{
    std::string selectors;
    for (const FilterProperty& property : filter.properties) {
        if (const std::string selector = property.selector(); !selector.empty())
            selectors += (selectors.empty() ? "`" : ", `") + selector + "`";
    }
    for (const FilterSelector& selector : filter.selectors)
        selectors += (selectors.empty() ? "`" : ", `") + selector.name + "` (" + argumentTypes(selector) + ")";
    return selectors;
}

std::string selectorAsMarkdown(const FilterSelector& selector)
{
    const std::string start = startOf(selector);
    return "| `" + selector.name + "` | " + argumentTypes(selector) + " | " + (start.empty() ? "" : "`" + start + "`") +
           " | " + selector.help + " |\n";
}

std::string resultAsMarkdown(const FilterResult& result)
{
    return "| `" + result.name + "` | " + typeOf(result) + " | " + result.unit + " | " + result.help + " |\n";
}

/// A small picture of what it does, and of what it was set to for that.
std::string sampleAsMarkdown(const FilterDescription& filter)
{
    std::string text = "![" + filter.className + "](images/filters/" + filter.className + ".jpg)";
    for (const std::string& setting : settingTexts(filter.sample))
        text += " `" + setting + "`";
    return text;
}

std::string entryAsMarkdown(const FilterDescription& filter)
{
    std::string text = "### " + filter.className + "\n\n" + helpOf(filter) + ".";
    if (filter.inputs != 1)
        text += " Takes " + countedPictures(static_cast<std::size_t>(filter.inputs)) + ": " + inputNames(filter) + ".";
    if (filter.isGenerator)
        text += " Takes a picture, or none and a size.";
    text += "\n\n" + sampleAsMarkdown(filter) + "\n";
    if (!filter.properties.empty())
        text += "\n| property | type | default | useful values | unit | meaning |\n|---|---|---|---|---|---|\n";
    for (const FilterProperty& property : filter.properties)
        text += propertyAsMarkdown(property);
    if (!filter.selectors.empty())
        text += "\n| operation | values | without effect | meaning |\n|---|---|---|---|\n";
    for (const FilterSelector& selector : filter.selectors)
        text += selectorAsMarkdown(selector);
    if (!filter.reporting.results.empty())
        text += "\n| reported | type | unit | meaning |\n|---|---|---|---|\n";
    for (const FilterResult& result : filter.reporting.results)
        text += resultAsMarkdown(result);
    if (const std::string selectors = selectorsAsMarkdown(filter); !selectors.empty())
        text += "\nIn a pipeline: " + selectors + ".\n";
    return text + "\n";
}

constexpr const char* kMarkdownHead = R"page(# The filters

Every filter that `lamina filter`, pipelines and programs can name. The list of the program at hand: `lamina filters`; one
filter's page: `lamina filters NAME`; for programs: `lamina filters --json`.

    lamina filter GPUImageSepiaFilter -i beach.jpg --set intensity=0.8 -o sepia.jpg

*Useful values* are advice for sliders, for each component; a filter takes others too. An operation of several values is
written `--set setColorRed:green:blue:=0.6,0.45,0.3`, or `--set setColorRed=0.6,0.45,0.3`, and one without values by its
name alone; whatever is set acts in the order given. In a pipeline a number is written `float(V)`, a point
`CGPoint(X, Y)`, and whatever else `NSString(...)` with the text that `--set` would take; operations take lists of these:

    {"Filters": [{"FilterName": "GPUImageSepiaFilter", "Attributes": {"setIntensity:": "float(0.8)"}}]}

Pictures are given in the order in which a filter's inputs are named; the first gives the size, and the others are stretched
to it. One that takes *a picture, or none and a size*, draws without `-i` what `--size WxH` asks for. A filter that *works on
premultiplied colours* gets its pictures so, and gives straight alpha again.

A filter that reports finds numbers beside its picture: `lamina filter NAME -i X --report` prints them as a JSON object with
the names that its table gives, on standard output; with `-o` the picture is written too.

The pictures show what each filter makes of one photo, with the settings beside it where its defaults would show little, and of
that photo below a second one where it takes two. Those of a photo of one's own, on one sheet: `lamina filters --sheet`.

This page is made by `lamina filters --markdown`; [new-filter.md](new-filter.md) tells how to write a filter.

)page";

} // namespace

std::string FilterFamily::title() const
{
    return capitalised(name);
}

std::vector<FilterFamily> filterFamilies(const FilterRegistry& registry)
{
    std::map<std::string_view, FilterFamily> families;
    for (const auto& [name, filter] : registry.all()) {
        FilterFamily& family = families[filter.family];
        family.name = filter.family;
        family.filters.push_back(&filter);
    }
    std::vector<FilterFamily> sorted;
    sorted.reserve(families.size());
    for (auto& [name, family] : families)
        sorted.push_back(std::move(family));
    return sorted;
}

std::string filtersAsText(const FilterRegistry& registry)
{
    std::string text;
    for (const FilterFamily& family : filterFamilies(registry)) {
        text += (text.empty() ? "" : "\n") + family.title() + " filters:\n";
        for (const FilterDescription* filter : family.filters)
            text += entryAsText(*filter);
    }
    return text;
}

std::string filterAsText(const FilterDescription& filter)
{
    std::string text = capitalised(filter.family) + " filter:\n" + entryAsText(filter);
    return text + "\nExample: " + exampleOf(filter) + "\n";
}

std::string filtersAsJson(const FilterRegistry& registry)
{
    Json list = Json::array();
    for (const auto& [name, filter] : registry.all())
        list.push_back(entryAsJson(filter));
    return jsonText(list);
}

std::string filterAsJson(const FilterDescription& filter)
{
    return jsonText(entryAsJson(filter));
}

namespace {

Json reportObject(const std::vector<FilterResult>& results, const FilterReport& report)
{
    Json object = Json::object();
    for (std::size_t i = 0; i < results.size(); ++i) {
        const FilterResult& result = results[i];
        const std::size_t length = std::max<std::size_t>(1, result.fields.size());
        Json entries = Json::array();
        for (std::span<const double> rest = report[i]; rest.size() >= length; rest = rest.subspan(length))
            entries.push_back(valuesAsJson(result, rest.first(length)));
        object[result.name] = result.isList ? std::move(entries) : std::move(entries.at(0));
    }
    return object;
}

} // namespace

std::string reportAsJson(const std::vector<FilterResult>& results, const FilterReport& report)
{
    return jsonText(reportObject(results, report));
}

std::string reportAsJsonLine(const std::string& file, const std::vector<FilterResult>& results,
                             const FilterReport& report)
{
    Json line = Json::object();
    line["file"] = file;
    line["report"] = reportObject(results, report);
    // A name need not be a text; what is none in it is replaced.
    return jsonText(line, -1);
}

std::string filtersAsMarkdown(const FilterRegistry& registry)
{
    std::string text = kMarkdownHead;
    for (const FilterFamily& family : filterFamilies(registry)) {
        text += "## " + family.title() + "\n\n";
        for (const FilterDescription* filter : family.filters)
            text += entryAsMarkdown(*filter);
    }
    text.pop_back();
    return text;
}

} // namespace lamina
