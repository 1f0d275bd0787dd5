#include "gpu/filters/color/GPUImageOpacityFilter.h"

namespace lamina {

namespace {

constexpr float kStart = 1;

constexpr const char* kStatements = R"(
    gl_FragColor = vec4(color.rgb, color.a * opacity);
)";

} // namespace

GPUImageOpacityFilter::GPUImageOpacityFilter()
    : ColorValueFilter("opacity", kStatements, kStart)
{
}

FilterDescription GPUImageOpacityFilter::describe()
{
    using Self = GPUImageOpacityFilter;
    return filterDescription<Self>(
        "GPUImageOpacityFilter", "colour", 1, "Makes a picture translucent",
        {filterProperty("opacity", &Self::setOpacity, kStart, {0, 1}, "", "Factor of the alpha")});
}

} // namespace lamina
