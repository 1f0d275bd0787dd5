#include "cli/FilterParsing.h"

#include "cli/Messages.h"
#include "cli/NearestName.h"
#include "gpu/filters/FilterCatalogue.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace lamina {

namespace {

std::string unknownProperty(const FilterDescription& filter, std::string_view name)
{
    if (filter.properties.empty())
        return filter.className + " has no properties to set";
    std::vector<std::string_view> names;
    for (const FilterProperty& property : filter.properties)
        names.push_back(property.name);
    return filter.className + " has no property '" + beginning(name) + "'; did you mean " +
           std::string(nearestName(name, names)) + "?";
}

/// "point written X,Y"; of what is a single word in capitals, like NUMBER, the type's name says it all.
std::string typeAndSyntax(const FilterValue& value)
{
    const std::string type(filterValueTypeName(value));
    const std::string_view syntax = filterValueSyntax(value);
    const bool isWord = std::ranges::all_of(syntax, [](char c) { return c >= 'A' && c <= 'Z'; });
    return isWord ? type : type + " written " + std::string(syntax);
}

/// "intensity must be a number, not 'full', as in intensity=1".
std::string wrongValue(const FilterProperty& property, std::string_view value)
{
    const std::string type = typeAndSyntax(property.fallback);
    return property.name + " must be " + (type.starts_with('i') ? "an " : "a ") + type +
           (property.unit.empty() ? "" : " in " + property.unit) + ", not '" + beginning(value) + "', as in " +
           property.name + "=" + formatFilterValue(property.fallback);
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
    return Error{className.empty() ? "filter" : beginning(className), "there is no such filter; did you mean " +
                                                                          std::string(nearestName(className, names)) +
                                                                          "? lamina filters lists them"};
}

Result<FilterSettings> parseSettings(const FilterDescription& filter, const std::vector<std::string>& texts)
{
    FilterSettings settings;
    for (const std::string& text : texts) {
        const std::string_view whole = text;
        const std::size_t equals = whole.find('=');
        if (equals == std::string_view::npos)
            return Error{text.empty() ? "--set" : beginning(text), "a setting is PROPERTY=VALUE"};
        const std::string_view name = whole.substr(0, equals);
        const std::string_view written = whole.substr(equals + 1);
        const FilterProperty* property = filter.property(name);
        if (!property)
            return Error{beginning(text), unknownProperty(filter, name)};
        Result<FilterValue> value = parseFilterValue(written, property->fallback);
        if (!value)
            return Error{beginning(text), wrongValue(*property, written)};
        settings.emplace_back(property->name, std::move(*value));
    }
    return settings;
}

std::string countedPictures(std::size_t count)
{
    return std::to_string(count) + (count == 1 ? " picture" : " pictures");
}

} // namespace lamina
