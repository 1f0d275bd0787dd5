#include "gpu/core/FilterRegistry.h"

#include <algorithm>
#include <cctype>

namespace lamina {

std::string FilterProperty::selector() const
{
    if (!set || name.empty())
        return {};
    const char initial = static_cast<char>(std::toupper(static_cast<unsigned char>(name.front())));
    return "set" + std::string(1, initial) + name.substr(1) + ":";
}

const FilterProperty* FilterDescription::property(std::string_view name) const
{
    const auto found = std::ranges::find(properties, name, &FilterProperty::name);
    return found == properties.end() ? nullptr : &*found;
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

Result<std::shared_ptr<GPUImageStage>> makeFilter(const FilterDescription& description, const FilterSettings& settings)
{
    for (const auto& [name, value] : settings) {
        const FilterProperty* property = description.property(name);
        if (!property)
            return Error{name, description.className + " has no such property"};
        if (property->fallback.index() != value.index())
            return Error{name, "expected " + std::string(kindOf(property->fallback).syntax)};
    }
    std::shared_ptr<GPUImageStage> filter = description.make(settings);
    for (const auto& [name, value] : settings) {
        const FilterProperty* property = description.property(name);
        if (property->set)
            property->set(*filter, value);
    }
    return filter;
}

} // namespace lamina
