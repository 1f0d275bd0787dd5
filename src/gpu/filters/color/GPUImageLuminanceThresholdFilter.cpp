#include "gpu/filters/color/GPUImageLuminanceThresholdFilter.h"

namespace lamina {

namespace {

constexpr float kStart = 0.5F;

constexpr const char* kStatements = R"(
    gl_FragColor = vec4(vec3(step(threshold, luminanceOf(color.rgb))), color.a);
)";

} // namespace

GPUImageLuminanceThresholdFilter::GPUImageLuminanceThresholdFilter()
    : ColorValueFilter("threshold", kStatements, kStart)
{
}

FilterDescription GPUImageLuminanceThresholdFilter::describe()
{
    using Self = GPUImageLuminanceThresholdFilter;
    return filterDescription<Self>("GPUImageLuminanceThresholdFilter", "colour", 1,
                                   "Black and white, parted at a brightness",
                                   {filterProperty("threshold", &Self::setThreshold, kStart, {0, 1}, "",
                                                   "Luminance from which a pixel is white")});
}

} // namespace lamina
