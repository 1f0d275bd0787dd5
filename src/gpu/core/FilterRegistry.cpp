#include "gpu/core/FilterRegistry.h"

#include <algorithm>
#include <cctype>
#include <utility>

namespace lamina {

std::string FilterProperty::selector() const
{
    if (name.empty())
        return {};
    const char initial = static_cast<char>(std::toupper(static_cast<unsigned char>(name.front())));
    return (set ? "set" : "initWith") + std::string(1, initial) + name.substr(1) + ":";
}

const FilterProperty* FilterDescription::property(std::string_view name) const
{
    const auto found = std::ranges::find(properties, name, &FilterProperty::name);
    return found == properties.end() ? nullptr : &*found;
}

const FilterSelector* FilterDescription::selector(std::string_view name) const
{
    const auto found = std::ranges::find_if(
        selectors, [&](const FilterSelector& one) { return one.name == name || one.keyword() == name; });
    return found == selectors.end() ? nullptr : &*found;
}

void FilterRegistry::add(FilterDescription description)
{
    std::string name = description.className;
    m_filters.insert_or_assign(std::move(name), std::move(description));
}

const FilterDescription* FilterRegistry::find(std::string_view className) const
{
    const auto found = m_filters.find(className);
    return found == m_filters.end() ? nullptr : &found->second;
}

namespace {

Outcome checkTypes(const FilterSetting& setting, std::span<const TypedValue> wanted)
{
    if (setting.values.size() != wanted.size()) {
        return Error{setting.name, "takes " + std::to_string(wanted.size()) +
                                       (wanted.size() == 1 ? " value" : " values") + ", not " +
                                       std::to_string(setting.values.size())};
    }
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        if (setting.values[i].index() != wanted[i].index())
            return Error{setting.name, "expected " + std::string(kindOf(wanted[i]).syntax)};
    }
    return success();
}

Outcome checkSetting(const FilterDescription& description, const FilterSetting& setting)
{
    if (const FilterProperty* property = description.property(setting.name)) {
        const Outcome suits = checkTypes(setting, {&property->fallback, 1});
        return suits && property->check ? property->check(setting.values.front()) : suits;
    }
    if (const FilterSelector* selector = description.selector(setting.name))
        return checkTypes(setting, selector->arguments);
    return Error{setting.name, description.className + " has no such property"};
}

void apply(const FilterDescription& description, const FilterSetting& setting, GPUImageStage& filter)
{
    const FilterProperty* property = description.property(setting.name);
    if (!property)
        description.selector(setting.name)->call(filter, setting.values);
    else if (property->set)
        property->set(filter, setting.values.front());
}

} // namespace

FilterProperty argumentProperty(std::string name, TypedValue fallback, ValueRange range, std::string unit,
                                std::string help)
{
    return {std::move(name), std::move(fallback), range, std::move(unit), std::move(help), nullptr};
}

const TypedValue& argumentIn(const FilterSettings& settings, const FilterProperty& argument)
{
    const auto last = std::find_if(settings.rbegin(), settings.rend(),
                                   [&](const FilterSetting& setting) { return setting.name == argument.name; });
    return last == settings.rend() ? argument.fallback : last->values.front();
}

Outcome checkSettings(const FilterDescription& description, const FilterSettings& settings)
{
    for (const FilterSetting& setting : settings) {
        if (Outcome suits = checkSetting(description, setting); !suits)
            return suits;
    }
    return success();
}

Result<std::shared_ptr<GPUImageStage>> makeFilter(const FilterDescription& description, const FilterSettings& settings)
{
    if (const Outcome suits = checkSettings(description, settings); !suits)
        return suits.error();
    std::shared_ptr<GPUImageStage> filter = description.make(settings);
    for (const FilterSetting& setting : settings)
        apply(description, setting, *filter);
    return filter;
}

} // namespace lamina
