#include "gpu/filters/blur/NineSampleShader.h"

#include <array>
#include <cstddef>

namespace lamina {

namespace {

/// Outwards from the middle's neighbours.
constexpr std::array<const char*, 4> kOuterWeights{"0.15", "0.12", "0.09", "0.05"};

constexpr const char* kHead = R"(precision highp float;

varying highp vec2 textureCoordinate;
uniform highp sampler2D inputImageTexture;

vec4 pixel;
vec4 sum = vec4(0.0);
)";

constexpr const char* kMain = R"(
void main()
{
    pixel = texture2D(inputImageTexture, textureCoordinate);
    add(pixel, 0.18);
)";

std::string addReadAt(std::size_t steps, const char* sign, const char* weight)
{
    return std::string("    add(texture2D(inputImageTexture, textureCoordinate ") + sign + " " + std::to_string(steps) +
           ".0 * stride), " + weight + ");\n";
}

} // namespace

std::string nineSampleShader(const NineSamples& samples)
{
    std::string text = kHead + samples.declarations;
    text += "\nvoid add(vec4 color, float weight)\n{\n    " + samples.addition + "\n}\n";
    text += kMain;
    text += "    vec2 stride = " + samples.stride + ";\n";
    for (std::size_t i = 0; i < kOuterWeights.size(); ++i) {
        for (const char* sign : {"-", "+"})
            text += addReadAt(i + 1, sign, kOuterWeights[i]);
    }
    return text + "    gl_FragColor = " + samples.result + ";\n}\n";
}

} // namespace lamina
