#include "gpu/filters/effect/VoronoiCode.h"

#include "gpu/core/HighPrecision.h"

namespace lamina {

namespace {

constexpr const char* kHead = R"(
precision highp float;

varying vec2 textureCoordinate;
uniform highp sampler2D inputImageTexture;
uniform vec2 size;

vec4 codeOf(vec2 pixel)
{
    vec2 high = floor(pixel / 256.0);
    vec2 low = pixel - 256.0 * high;
    return vec4(high.x, low.x, high.y, low.y) / 255.0;
}

vec2 pixelOf(vec4 code)
{
    vec4 bytes = floor(code * 255.0 + 0.5);
    return bytes.xz * 256.0 + bytes.yw;
}

bool isNone(vec4 code)
{
    return all(greaterThan(code, vec4(0.999)));
}

// A hair beyond: hardware cuts places to 256ths of a pixel, and just before the middle a neighbour would mix in.
vec2 middleOf(vec2 pixel)
{
    return (pixel + (0.5 + 1.0 / 1024.0)) / size;
}
)";

} // namespace

std::string voronoiShader(const std::string& className, const std::string& body)
{
    return needingHighPrecision(className, kHead + body);
}

} // namespace lamina
