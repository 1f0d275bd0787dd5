#include "gpu/filters/color/GPUImageBrightnessFilter.h"

namespace lamina {

namespace {

constexpr float kStart = 0;

constexpr const char* kStatements = R"(
    gl_FragColor = vec4(color.rgb + brightness, color.a);
)";

} // namespace

GPUImageBrightnessFilter::GPUImageBrightnessFilter()
    : ColorValueFilter("brightness", kStatements, kStart)
{
}

FilterDescription GPUImageBrightnessFilter::describe()
{
    using Self = GPUImageBrightnessFilter;
    return filterDescription<Self>(
        "GPUImageBrightnessFilter", "colour", 1, "Lightens or darkens by the same amount everywhere",
        {filterProperty("brightness", &Self::setBrightness, kStart, {-1, 1}, "", "Added to every channel")});
}

} // namespace lamina
