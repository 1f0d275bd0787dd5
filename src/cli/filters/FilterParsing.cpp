#include "cli/filters/FilterParsing.h"

#include "cli/common/Messages.h"
#include "cli/common/NamedValue.h"
#include "cli/common/NearestName.h"
#include "gpu/core/TypedValue.h"
#include "gpu/filters/FilterCatalogue.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>
#include <utility>
#include <variant>

namespace lamina {

namespace {

std::string unknownProperty(const FilterDescription& filter, std::string_view name)
{
    std::vector<std::string_view> names;
    for (const FilterProperty& property : filter.properties)
        names.push_back(property.name);
    for (const FilterSelector& selector : filter.selectors)
        names.push_back(selector.name);
    if (names.empty())
        return filter.className + " has no properties to set";
    return filter.className + " has no property '" + beginning(name) + "'; " + didYouMean(name, names);
}

/// "intensity must be a number, not 'full', as in intensity=1".
Result<TypedValue> parseProperty(const FilterProperty& property, std::string_view text)
{
    Result<TypedValue> value = parseNamedValue(property.name, text, kindOf(property.fallback), property.unit);
    if (value)
        return value;
    return Error{property.name, value.error().cause + ", as in " + property.name + "=" + exampleOf(property.fallback)};
}

/// How many of the texts between commas a value takes: a point two, a text or a list at the end all that are left.
std::size_t fieldsFor(const TypedValue& value, std::size_t left, bool isLast)
{
    const ValueKind& kind = kindOf(value);
    if (isLast && (kind.type == ValueType::File || kind.type == ValueType::Text || kind.type == ValueType::Points))
        return left;
    return std::min(left, fieldsOf(kind.syntax, ',').size());
}

/// The texts of the arguments; what there is too much of stands alone.
std::vector<std::string_view> split(std::string_view text, const std::vector<TypedValue>& arguments)
{
    std::vector<std::string_view> fields = fieldsOf(text, ',');
    for (std::size_t i = 0; i < arguments.size() && i < fields.size(); ++i) {
        const std::size_t count = fieldsFor(arguments[i], fields.size() - i, i + 1 == arguments.size());
        const std::string_view& last = fields[i + count - 1];
        fields[i] = {fields[i].data(), static_cast<std::size_t>(last.data() + last.size() - fields[i].data())};
        fields.erase(fields.begin() + static_cast<std::ptrdiff_t>(i) + 1,
                     fields.begin() + static_cast<std::ptrdiff_t>(i + count));
    }
    return fields;
}

/// "setMin:gamma: takes 2 values, not 3, as in setMin:gamma:=0,1".
Result<std::vector<TypedValue>> parseArguments(const FilterSelector& selector,
                                               const std::vector<std::string_view>& fields)
{
    const std::string asIn = ", as in " + argumentExample(selector);
    const std::size_t wanted = selector.arguments.size();
    if (fields.size() != wanted) {
        return Error{selector.name, selector.name + " takes " + std::to_string(wanted) +
                                        (wanted == 1 ? " value, not " : " values, not ") +
                                        std::to_string(fields.size()) + asIn};
    }
    const std::vector<std::string_view> keywords = fieldsOf(selector.name, ':');
    std::vector<TypedValue> values;
    for (std::size_t i = 0; i < wanted; ++i) {
        Result<TypedValue> value = parseNamedValue(keywords[i], fields[i], kindOf(selector.arguments[i]));
        if (!value)
            return Error{selector.name, value.error().cause + asIn};
        values.push_back(std::move(*value));
    }
    return values;
}

/// A property by "NAME=VALUE", an operation by "NAME=VALUE,VALUE..." or its name alone.
Result<FilterSetting> parseSetting(const FilterDescription& filter, std::string_view text)
{
    const std::size_t equals = text.find('=');
    const bool hasValue = equals != std::string_view::npos;
    const std::string_view name = text.substr(0, equals);
    const std::string_view typed = hasValue ? text.substr(equals + 1) : std::string_view();
    const FilterProperty* property = filter.property(name);
    const FilterSelector* selector = property || name.empty() ? nullptr : filter.selector(name);
    if (selector) {
        const std::vector<std::string_view> none;
        Result<std::vector<TypedValue>> values =
            parseArguments(*selector, hasValue ? split(typed, selector->arguments) : none);
        if (!values)
            return values.error();
        return FilterSetting(selector->name, std::move(*values));
    }
    if (!hasValue && (property || filter.selectors.empty()))
        return Error{{}, "a setting is PROPERTY=VALUE"};
    if (!property)
        return Error{{}, unknownProperty(filter, name)};
    Result<TypedValue> value = parseProperty(*property, typed);
    if (!value)
        return value.error();
    return FilterSetting(property->name, std::move(*value));
}

} // namespace

Result<const FilterDescription*> filterNamed(const std::string& className)
{
    const FilterRegistry& catalogue = filterCatalogue();
    if (const FilterDescription* filter = catalogue.find(className))
        return filter;
    std::vector<std::string_view> names;
    for (const auto& [name, description] : catalogue.all())
        names.push_back(name);
    return Error{className.empty() ? "filter" : beginning(className),
                 "there is no such filter; " + didYouMean(className, names) + " lamina filters lists them"};
}

Result<FilterSettings> parseSettings(const FilterDescription& filter, const std::vector<std::string>& texts)
{
    FilterSettings settings;
    for (const std::string& text : texts) {
        Result<FilterSetting> setting = parseSetting(filter, text);
        if (!setting)
            return Error{text.empty() ? "--set" : beginning(text), setting.error().cause};
        settings.push_back(std::move(*setting));
    }
    return settings;
}

std::string exampleOf(const TypedValue& value)
{
    const std::string text = formatValue(value);
    return text.empty() ? std::string(kindOf(value).syntax) : text;
}

std::string argumentExample(const FilterSelector& selector)
{
    std::string example = selector.name;
    for (const TypedValue& argument : selector.arguments)
        example += (&argument == &selector.arguments.front() ? "=" : ",") + exampleOf(argument);
    return example;
}

std::vector<std::string> settingTexts(const FilterSettings& settings)
{
    std::vector<std::string> texts;
    for (const FilterSetting& setting : settings) {
        std::string& text = texts.emplace_back(setting.name);
        for (const TypedValue& value : setting.values)
            text += (&value == &setting.values.front() ? "=" : ",") + formatValue(value);
    }
    return texts;
}

Result<IntSize> parsePixelSize(const std::string& text)
{
    std::vector<int> sides;
    for (const std::string_view field : fieldsOf(text, 'x')) {
        constexpr std::uint32_t kMost = std::numeric_limits<int>::max();
        const Result<TypedValue> side = parseValue(field, kind::kCount);
        sides.push_back(side ? static_cast<int>(std::min(std::get<std::uint32_t>(*side), kMost)) : 0);
    }
    if (sides.size() != 2 || sides[0] == 0 || sides[1] == 0)
        return Error{"--size", "expected a size in whole pixels, as in 640x480, not '" + beginning(text) + "'"};
    return IntSize{sides[0], sides[1]};
}

std::string countedPictures(std::size_t count)
{
    return std::to_string(count) + (count == 1 ? " picture" : " pictures");
}

} // namespace lamina
