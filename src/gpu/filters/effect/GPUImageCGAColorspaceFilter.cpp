// The palette is number 1, in its bright form, of the Color Graphics Adapter (IBM, 1981).

#include "gpu/filters/effect/GPUImageCGAColorspaceFilter.h"

#include "gpu/filters/color/ColorShaders.h"

namespace lamina {

namespace {

constexpr const char* kFunctions = R"(
vec3 nearer(vec3 color, vec3 one, vec3 other)
{
    return distance(color, other) < distance(color, one) ? other : one;
}
)";

constexpr const char* kPlacing = R"(
    place -= mod(place, vec2(1.0 / 200.0, 1.0 / 320.0));
)";

constexpr const char* kStatements = R"(
    vec3 found = nearer(color.rgb, vec3(0.0), vec3(1.0));
    found = nearer(color.rgb, found, vec3(85.0 / 255.0, 1.0, 1.0));
    found = nearer(color.rgb, found, vec3(1.0, 85.0 / 255.0, 1.0));
    gl_FragColor = vec4(found, color.a);
)";

} // namespace

GPUImageCGAColorspaceFilter::GPUImageCGAColorspaceFilter()
    : GPUImageFilter(placedColorShader(kFunctions, kPlacing, kStatements))
{
}

FilterDescription GPUImageCGAColorspaceFilter::describe()
{
    return filterDescription<GPUImageCGAColorspaceFilter>(
        "GPUImageCGAColorspaceFilter", "effect", 1, "Black, white, cyan and magenta, as on an early home computer");
}

} // namespace lamina
