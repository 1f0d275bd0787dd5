// Luma and the two chroma signals of NTSC (FCC, 1953), Y', I and Q: a hue is an angle in the plane of I and Q.

#include "gpu/filters/color/HueRotationFilter.h"

#include <cmath>
#include <numbers>

namespace lamina {

namespace {

constexpr const char* kPrecision = "precision highp float;\n";

// A turn by sine and cosine instead of by way of the polar angle: that one is undefined for greys.
constexpr const char* kHueFragmentShader = R"(
varying vec2 textureCoordinate;
uniform highp sampler2D inputImageTexture;
uniform float hueAdjust;

const vec4 kRGBToYPrime = vec4(0.299, 0.587, 0.114, 0.0);
const vec4 kRGBToQ = vec4(0.211456, -0.522591, 0.31135, 0.0);
const vec4 kYIQToG = vec4(1.0, -0.2721, -0.6474, 0.0);
const vec4 kYIQToB = vec4(1.0, -1.1070, 1.7046, 0.0);

void main()
{
    vec4 color = texture2D(inputImageTexture, textureCoordinate);
    float YPrime = dot(color, kRGBToYPrime);
    float I = dot(color, kRGBToI);
    float Q = dot(color, kRGBToQ);

    float c = cos(hueAdjust);
    float s = sin(hueAdjust);
    vec4 yIQ = vec4(YPrime, I * c + Q * s, Q * c - I * s, 0.0);
    gl_FragColor = vec4(dot(yIQ, kYIQToR), dot(yIQ, kYIQToG), dot(yIQ, kYIQToB), color.a);
}
)";

} // namespace

HueRotationFilter::HueRotationFilter(const std::string& constants, double halfTurn)
    : GPUImageFilter(kPrecision + constants + kHueFragmentShader)
    , m_halfTurn(halfTurn)
    , m_hueAdjustUniform(uniformIndex("hueAdjust"))
{
    setHue(90);
}

void HueRotationFilter::setHue(float hue)
{
    m_hue = static_cast<float>(std::fmod(hue, 360.0F) * std::numbers::pi / m_halfTurn);
    setFloat(m_hue, m_hueAdjustUniform, m_filterProgram);
}

} // namespace lamina
