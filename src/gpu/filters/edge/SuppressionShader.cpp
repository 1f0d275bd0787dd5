#include "gpu/filters/edge/SuppressionShader.h"

#include "gpu/core/GPUImage3x3TextureSamplingFilter.h"

#include <initializer_list>

namespace lamina {

namespace {

// Between texels, linear reads are off by less than half a step. What lies beyond the border would read as the border's
// own pixel, which is not above itself.
constexpr const char* kComparisons = R"(
float notBelow(float value, float other)
{
    return step(other - 0.5, value);
}

float above(float value, float other, vec2 place)
{
    vec2 inside = step(vec2(0.0), place) * step(place, vec2(1.0));
    return max(step(other + 0.5, value), 1.0 - inside.x * inside.y);
}
)";

constexpr const char* kValueOfRed = R"(
float valueOf(vec3 color)
{
    return color.r * 255.0;
}
)";

constexpr const char* kValueOfPacked = R"(
float valueOf(vec3 color)
{
    return dot(floor(color * 255.0 + 0.5), vec3(1.0, 256.0, 65536.0));
}
)";

} // namespace

std::string suppressionShader(SuppressedValue value, const std::string& declarations, const std::string& condition)
{
    std::string text = "    float centre = valueOf(color.rgb);\n    float kept = " + condition + ";\n";
    for (const char* name : {"topLeft", "top", "topRight", "left"}) {
        text.append("    kept *= above(centre, valueOf(").append(name).append("), ");
        text.append(name).append("TextureCoordinate);\n");
    }
    for (const char* name : {"right", "bottomLeft", "bottom", "bottomRight"})
        text.append("    kept *= notBelow(centre, valueOf(").append(name).append("));\n");
    text += "    gl_FragColor = vec4(color.rgb * kept, color.a);\n";
    const char* valueOf = value == SuppressedValue::Red ? kValueOfRed : kValueOfPacked;
    return neighbourhoodShader(NeighbourValue::Rgb, declarations + valueOf + kComparisons, text);
}

} // namespace lamina
