// Luma and the two chroma signals of NTSC (FCC, 1953), Y', I and Q: a hue is an angle in the plane of I and Q.

#include "gpu/filters/color/HueRotationFilter.h"
#include "gpu/kernels/ColorKernels.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <span>

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

/// The declaration of a vector, in the fewest digits that say it.
std::string constant(const char* name, const GPUVector3& value)
{
    std::string text = std::string("const vec4 ") + name + " = vec4(";
    for (const float number : {value.one, value.two, value.three}) {
        std::array<char, 32> digits{};
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number);
        text.append(digits.data(), end.ptr).append(", ");
    }
    return text + "0.0);\n";
}

using Row = std::array<float, 3>;

} // namespace

HueRotationFilter::HueRotationFilter(const GPUVector3& rgbToI, const GPUVector3& yiqToR, double halfTurn)
    : GPUImageFilter(kPrecision + constant("kRGBToI", rgbToI) + constant("kYIQToR", yiqToR) + kHueFragmentShader)
    , m_rgbToI(rgbToI)
    , m_yiqToR(yiqToR)
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

FilterKernel HueRotationFilter::kernel() const
{
    const std::span<const float> angle = uniformValues(m_hueAdjustUniform);
    if (angle.empty())
        return {};
    const Row toY{0.299F, 0.587F, 0.114F};
    const Row toI{m_rgbToI.one, m_rgbToI.two, m_rgbToI.three};
    const Row toQ{0.211456F, -0.522591F, 0.31135F};
    const std::array<Row, 3> back{
        {{m_yiqToR.one, m_yiqToR.two, m_yiqToR.three}, {1.0F, -0.2721F, -0.6474F}, {1.0F, -1.1070F, 1.7046F}}};
    const float c = std::cos(angle[0]);
    const float s = std::sin(angle[0]);
    kernels::ColorMatrix matrix = kernels::kSameColors;
    for (std::size_t to = 0; to < 3; ++to) {
        for (std::size_t from = 0; from < 3; ++from) {
            const float turnedI = toI[from] * c + toQ[from] * s;
            const float turnedQ = toQ[from] * c - toI[from] * s;
            matrix[to][from] = toY[from] * back[to][0] + turnedI * back[to][1] + turnedQ * back[to][2];
        }
    }
    return kernels::matrixKernel(matrix);
}

} // namespace lamina
