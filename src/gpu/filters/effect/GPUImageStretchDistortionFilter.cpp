#include "gpu/filters/effect/GPUImageStretchDistortionFilter.h"

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/color/ColorShaders.h"

namespace lamina {

namespace {

constexpr const char* kUniforms = R"(
uniform vec2 center;
)";

constexpr const char* kPlacing = R"(
    vec2 way = 2.0 * (place - center);
    vec2 far = abs(way);
    far = 0.5 * far + 0.5 * smoothstep(0.25, 0.5, far) * far;
    place = center + 0.5 * sign(way) * far;
)";

} // namespace

GPUImageStretchDistortionFilter::GPUImageStretchDistortionFilter()
    : CenteredFilter(placedColorShader(kUniforms, kPlacing))
{
}

FilterDescription GPUImageStretchDistortionFilter::describe()
{
    return filterDescription<GPUImageStretchDistortionFilter>("GPUImageStretchDistortionFilter", "effect", 1,
                                                              "Draws the middle out, as wide-angle lenses do",
                                                              {centerProperty()});
}

} // namespace lamina
