#include "gpu/filters/color/ColorShaders.h"

namespace lamina {

namespace {

constexpr const char* kHead = R"(
precision highp float;

varying vec2 textureCoordinate;
uniform highp sampler2D inputImageTexture;

float luminanceOf(vec3 color)
{
    return dot(color, vec3(0.2125, 0.7154, 0.0721));
}

// GLSL leaves the powers of 0 open.
vec3 power(vec3 base, vec3 exponent)
{
    return pow(max(base, vec3(0.00001)), exponent) * vec3(greaterThan(base, vec3(0.0)));
}
)";

constexpr const char* kMain = R"(
void main()
{
    vec4 color = texture2D(inputImageTexture, textureCoordinate);
)";

constexpr const char* kPlacedMain = R"(
void main()
{
    vec2 place = textureCoordinate;
)";

constexpr const char* kReadAtPlace = R"(
    vec4 color = texture2D(inputImageTexture, place);
)";

} // namespace

std::string colorShader(const std::string& declarations, const std::string& statements)
{
    return kHead + declarations + kMain + statements + "\n}\n";
}

std::string placedColorShader(const std::string& declarations, const std::string& placing,
                              const std::string& statements)
{
    return kHead + declarations + kPlacedMain + placing + kReadAtPlace + statements + "\n}\n";
}

} // namespace lamina
