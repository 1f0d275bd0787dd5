#include "gpu/filters/color/GPUImageContrastFilter.h"

namespace lamina {

namespace {

constexpr float kStart = 1;

constexpr const char* kStatements = R"(
    gl_FragColor = vec4((color.rgb - 0.5) * contrast + 0.5, color.a);
)";

} // namespace

GPUImageContrastFilter::GPUImageContrastFilter()
    : ColorValueFilter("contrast", kStatements, kStart)
{
}

FilterDescription GPUImageContrastFilter::describe()
{
    using Self = GPUImageContrastFilter;
    return filterDescription<Self>(
        "GPUImageContrastFilter", "colour", 1, "Spreads colours apart, or draws them together",
        {filterProperty("contrast", &Self::setContrast, kStart, {0, 4}, "", "Distance from the middle, as a factor")});
}

} // namespace lamina
