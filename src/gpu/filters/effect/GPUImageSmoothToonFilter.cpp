#include "gpu/filters/effect/GPUImageSmoothToonFilter.h"

#include "gpu/core/GPUImageStage.h"
#include "gpu/core/TypedValue.h"

#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

namespace lamina {

GPUImageSmoothToonFilter::GPUImageSmoothToonFilter()
{
    m_blur->addTarget(m_toon);
    addFilter(m_blur);
    addFilter(m_toon);
    setInitialFilters({m_blur});
    setTerminalFilter(m_toon);
}

namespace {

/// A member's property, set through the group.
FilterProperty memberProperty(const FilterDescription& member, std::string_view name, std::size_t index)
{
    FilterProperty property = *member.property(name);
    property.set = [set = property.set, index](GPUImageStage& group, const TypedValue& value) {
        set(*dynamic_cast<GPUImageFilterGroup&>(group).filterAtIndex(index), value);
    };
    return property;
}

} // namespace

FilterDescription GPUImageSmoothToonFilter::describe()
{
    std::vector<FilterProperty> properties{
        memberProperty(GPUImageGaussianBlurFilter::describe(), "blurRadiusInPixels", 0)};
    const FilterDescription toon = GPUImageToonFilter::describe();
    for (const FilterProperty& property : toon.properties)
        properties.push_back(memberProperty(toon, property.name, 1));
    return filterDescription<GPUImageSmoothToonFilter>(
        "GPUImageSmoothToonFilter", "effect", 1, "A cartoon that small detail doesn't disturb", std::move(properties));
}

} // namespace lamina
