// The second step of Canny's edge finder (A Computational Approach to Edge Detection, 1986), with the direction rounded
// to one of eight neighbours (Gonzalez and Woods, Digital Image Processing, chapter 10).

#include "gpu/filters/edge/GPUImageDirectionalNonMaximumSuppressionFilter.h"

namespace lamina {

namespace {

constexpr float kUpperStart = 0.5F;
constexpr float kLowerStart = 0.1F;

// A component counts from 22.5 degrees off the other axis on, the sine of which is 0.38268. 0.00196 is half a step of
// 8 bits.
constexpr const char* kFragmentShader = R"(precision highp float;

uniform highp sampler2D inputImageTexture;
uniform highp float upperThreshold;
uniform highp float lowerThreshold;

varying vec2 textureCoordinate;
varying vec2 texelStep;

void main()
{
    vec3 centre = texture2D(inputImageTexture, textureCoordinate).rgb;
    vec2 direction = centre.gb * 2.0 - 1.0;
    vec2 way = sign(direction) * step(0.38268, abs(direction)) * texelStep;
    float ahead = texture2D(inputImageTexture, textureCoordinate + way).r;
    float behind = texture2D(inputImageTexture, textureCoordinate - way).r;

    float kept = step(ahead - 0.00196, centre.r) * step(behind + 0.00196, centre.r);
    float share = clamp((centre.r - lowerThreshold) / max(upperThreshold - lowerThreshold, 0.00001), 0.0, 1.0);
    gl_FragColor = vec4(vec3(kept * share * share * (3.0 - 2.0 * share)), 1.0);
}
)";

} // namespace

GPUImageDirectionalNonMaximumSuppressionFilter::GPUImageDirectionalNonMaximumSuppressionFilter()
    : TexelSampling<GPUImageFilter>(kGPUImageTexelStepVertexShaderString, kFragmentShader)
    , m_upperThresholdUniform(uniformIndex("upperThreshold"))
    , m_lowerThresholdUniform(uniformIndex("lowerThreshold"))
{
    setUpperThreshold(kUpperStart);
    setLowerThreshold(kLowerStart);
}

void GPUImageDirectionalNonMaximumSuppressionFilter::setUpperThreshold(float threshold)
{
    m_upperThreshold = threshold;
    setFloat(threshold, m_upperThresholdUniform, m_filterProgram);
}

void GPUImageDirectionalNonMaximumSuppressionFilter::setLowerThreshold(float threshold)
{
    m_lowerThreshold = threshold;
    setFloat(threshold, m_lowerThresholdUniform, m_filterProgram);
}

FilterDescription GPUImageDirectionalNonMaximumSuppressionFilter::describe()
{
    using Self = GPUImageDirectionalNonMaximumSuppressionFilter;
    return filterDescription<Self>("GPUImageDirectionalNonMaximumSuppressionFilter", "edge", 1,
                                   "Thins the edges that the directional Sobel filter gives to lines of a pixel",
                                   texelProperties({
                                       filterProperty("upperThreshold", &Self::setUpperThreshold, kUpperStart, {0, 1},
                                                      "", "Steepness from which an edge is white"),
                                       filterProperty("lowerThreshold", &Self::setLowerThreshold, kLowerStart, {0, 1},
                                                      "", "Steepness up to which there is none"),
                                   }));
}

} // namespace lamina
