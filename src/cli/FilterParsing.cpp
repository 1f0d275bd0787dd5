#include "cli/FilterParsing.h"

#include "cli/Messages.h"
#include "cli/NamedValue.h"
#include "cli/NearestName.h"
#include "gpu/core/TypedValue.h"
#include "gpu/filters/FilterCatalogue.h"

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
    return filter.className + " has no property '" + beginning(name) + "'; " + didYouMean(name, names);
}

/// "intensity must be a number, not 'full', as in intensity=1".
Result<TypedValue> parseProperty(const FilterProperty& property, std::string_view text)
{
    Result<TypedValue> value = parseNamedValue(property.name, text, kindOf(property.fallback), property.unit);
    if (value)
        return value;
    return Error{property.name,
                 value.error().cause + ", as in " + property.name + "=" + formatValue(property.fallback)};
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
        const std::string_view whole = text;
        const std::size_t equals = whole.find('=');
        if (equals == std::string_view::npos)
            return Error{text.empty() ? "--set" : beginning(text), "a setting is PROPERTY=VALUE"};
        const std::string_view name = whole.substr(0, equals);
        const FilterProperty* property = filter.property(name);
        if (!property)
            return Error{beginning(text), unknownProperty(filter, name)};
        Result<TypedValue> value = parseProperty(*property, whole.substr(equals + 1));
        if (!value)
            return Error{beginning(text), value.error().cause};
        settings.emplace_back(property->name, std::move(*value));
    }
    return settings;
}

std::string countedPictures(std::size_t count)
{
    return std::to_string(count) + (count == 1 ? " picture" : " pictures");
}

} // namespace lamina
