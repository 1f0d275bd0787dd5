#include "gpu/filters/effect/GPUImageHalftoneFilter.h"

#include "gpu/core/FilterRegistry.h"

namespace lamina {

namespace {

constexpr float kFractionalWidthOfAPixel = 0.01F;

constexpr const char* kStatements = R"(
    bool isInDot = length(way) < fractionalWidthOfAPixel * 0.5 * (1.0 - luminanceOf(color.rgb));
    gl_FragColor = vec4(vec3(isInDot ? 0.0 : 1.0), color.a);
)";

} // namespace

GPUImageHalftoneFilter::GPUImageHalftoneFilter()
    : GPUImagePixellateFilter("", kStatements, kFractionalWidthOfAPixel)
{
}

FilterDescription GPUImageHalftoneFilter::describe()
{
    return filterDescription<GPUImageHalftoneFilter>("GPUImageHalftoneFilter", "effect", 1,
                                                     "Black dots on white, as in a newspaper",
                                                     pixellateProperties(kFractionalWidthOfAPixel));
}

} // namespace lamina
