#include "gpu/filters/color/GPUImageLuminanceRangeFilter.h"

namespace lamina {

namespace {

constexpr float kStart = 0.6F;

constexpr const char* kStatements = R"(
    float reduced = (0.5 - luminanceOf(color.rgb)) * rangeReduction;
    gl_FragColor = vec4(color.rgb + reduced, color.a);
)";

} // namespace

GPUImageLuminanceRangeFilter::GPUImageLuminanceRangeFilter()
    : ColorValueFilter("rangeReduction", kStatements, kStart)
{
}

FilterDescription GPUImageLuminanceRangeFilter::describe()
{
    using Self = GPUImageLuminanceRangeFilter;
    return filterDescription<Self>(
        "GPUImageLuminanceRangeFilter", "colour", 1, "Draws bright and dark parts together and leaves colours apart",
        {filterProperty("rangeReductionFactor", &Self::setRangeReductionFactor, kStart, {0, 1}, "",
                        "0 changes nothing, 1 gives all parts the same brightness")});
}

} // namespace lamina
