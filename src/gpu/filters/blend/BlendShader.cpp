#include "gpu/filters/blend/BlendShader.h"

namespace lamina {

namespace {

constexpr std::string_view kHead = R"(
precision highp float;

varying vec2 textureCoordinate;
varying vec2 textureCoordinate2;
uniform highp sampler2D inputImageTexture;
uniform highp sampler2D inputImageTexture2;

const float kLeast = 0.0001;

vec3 alone(vec4 base, vec4 overlay)
{
    return overlay.rgb * (1.0 - base.a) + base.rgb * (1.0 - overlay.a);
}

float unionAlpha(vec4 base, vec4 overlay)
{
    return base.a + overlay.a - base.a * overlay.a;
}

vec4 joined(vec4 base, vec4 overlay, vec3 both)
{
    return vec4(both + alone(base, overlay), unionAlpha(base, overlay));
}
)";

constexpr std::string_view kMain = R"(
void main()
{
    vec4 base = texture2D(inputImageTexture, textureCoordinate);
    vec4 overlay = texture2D(inputImageTexture2, textureCoordinate2);
    gl_FragColor = )";

} // namespace

std::string blendShader(std::string_view result, std::string_view declarations)
{
    std::string shader(kHead);
    return shader.append(declarations).append(kMain).append(result).append(";\n}\n");
}

} // namespace lamina
