// The luma of ITU-R BT.709 (Poynton's Color FAQ), laid under the tint by the blend mode Overlay (ISO 32000-1, section
// 11.3.5).

#include "gpu/filters/color/LuminanceTintFilter.h"
#include "gpu/kernels/ColorKernels.h"

namespace lamina {

namespace {

// An intensity of 5 is beyond the range of low precision, and multiplies what medium precision rounds, in what is read
// from the sampler too, to more than a step of 8 bits.
constexpr const char* kLuminanceTintFragmentShader = R"(
precision highp float;

varying vec2 textureCoordinate;
uniform highp sampler2D inputImageTexture;
uniform float intensity;
uniform vec3 filterColor;

const vec3 luminanceWeighting = vec3(0.2125, 0.7154, 0.0721);

void main()
{
    vec4 color = texture2D(inputImageTexture, textureCoordinate);
    float luminance = dot(color.rgb, luminanceWeighting);
    vec3 tint = luminance < 0.5 ? 2.0 * luminance * filterColor
                                : 1.0 - 2.0 * (1.0 - luminance) * (1.0 - filterColor);
    gl_FragColor = vec4(mix(color.rgb, tint, intensity), color.a);
}
)";

} // namespace

LuminanceTintFilter::LuminanceTintFilter(ColorOrder order, float intensity, const GPUVector4& color)
    : GPUImageFilter(kLuminanceTintFragmentShader)
    , m_order(order)
    , m_intensityUniform(uniformIndex("intensity"))
    , m_filterColorUniform(uniformIndex("filterColor"))
{
    setIntensity(intensity);
    setColor(color);
}

void LuminanceTintFilter::setIntensity(float intensity)
{
    m_intensity = intensity;
    setFloat(intensity, m_intensityUniform, m_filterProgram);
}

void LuminanceTintFilter::setColor(const GPUVector4& color)
{
    m_color = color;
    setColorRed(color.one, color.two, color.three);
}

void LuminanceTintFilter::setColorRed(float red, float green, float blue)
{
    const GPUVector3 sent =
        m_order == ColorOrder::RedGreenBlue ? GPUVector3{red, green, blue} : GPUVector3{green, red, blue};
    setVec3(sent, m_filterColorUniform, m_filterProgram);
}

FilterKernel LuminanceTintFilter::kernel() const
{
    const std::span<const float> intensity = uniformValues(m_intensityUniform);
    const std::span<const float> color = uniformValues(m_filterColorUniform);
    if (intensity.empty() || color.empty())
        return {};
    return kernels::luminanceTintKernel({{color[0], color[1], color[2]}, intensity[0]});
}

} // namespace lamina
