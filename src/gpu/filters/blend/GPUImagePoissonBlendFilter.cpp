#include "gpu/filters/blend/GPUImagePoissonBlendFilter.h"

#include "gpu/core/VideoProcessingQueue.h"
#include "gpu/filters/blend/BlendShader.h"

#include <algorithm>

namespace lamina {

namespace {

constexpr float kMix = 0.5F;
constexpr int kIterations = 10;

constexpr const char* kFragmentShader = R"(
precision highp float;

varying vec2 textureCoordinate;
varying vec2 leftTextureCoordinate;
varying vec2 rightTextureCoordinate;
varying vec2 topTextureCoordinate;
varying vec2 bottomTextureCoordinate;
varying vec2 textureCoordinate2;
varying vec2 leftTextureCoordinate2;
varying vec2 rightTextureCoordinate2;
varying vec2 topTextureCoordinate2;
varying vec2 bottomTextureCoordinate2;

uniform highp sampler2D inputImageTexture;
uniform highp sampler2D inputImageTexture2;
uniform float mixturePercent;

vec3 overlayStep(vec4 overlay, vec2 neighbourPlace)
{
    vec4 neighbour = texture2D(inputImageTexture2, neighbourPlace);
    return neighbour.a * (overlay.rgb - neighbour.rgb);
}

void main()
{
    vec4 color = texture2D(inputImageTexture, textureCoordinate);
    vec4 overlay = texture2D(inputImageTexture2, textureCoordinate2);
    vec3 around = texture2D(inputImageTexture, leftTextureCoordinate).rgb
        + texture2D(inputImageTexture, rightTextureCoordinate).rgb
        + texture2D(inputImageTexture, topTextureCoordinate).rgb
        + texture2D(inputImageTexture, bottomTextureCoordinate).rgb;
    vec3 steps = overlayStep(overlay, leftTextureCoordinate2) + overlayStep(overlay, rightTextureCoordinate2)
        + overlayStep(overlay, topTextureCoordinate2) + overlayStep(overlay, bottomTextureCoordinate2);
    gl_FragColor = vec4(mix(color.rgb, (around + steps) * 0.25, mixturePercent * overlay.a), color.a);
}
)";

} // namespace

GPUImagePoissonBlendFilter::GPUImagePoissonBlendFilter()
    : GPUImageTwoInputCrossTextureSamplingFilter(kFragmentShader)
    , m_mixUniform(uniformIndex("mixturePercent"))
    , m_numIterations(kIterations)
{
    setMix(kMix);
}

FilterDescription GPUImagePoissonBlendFilter::describe()
{
    using Self = GPUImagePoissonBlendFilter;
    return blendDescription<Self>(
        "GPUImagePoissonBlendFilter", "Lays the overlay's detail into the base in the base's colours",
        texelProperties({filterProperty("mix", &Self::setMix, kMix, {0, 1}, "", "How far each step goes; 0: the base"),
                         filterProperty("numIterations", &Self::setNumIterations, kIterations, {1, 1000}, "",
                                        "Steps; each carries colour one pixel farther")}));
}

void GPUImagePoissonBlendFilter::setMix(float mix)
{
    m_mix = mix;
    setFloat(mix, m_mixUniform, m_filterProgram);
}

int GPUImagePoissonBlendFilter::numIterations() const
{
    return valueFromVideoProcessingQueue([this] { return m_numIterations; });
}

void GPUImagePoissonBlendFilter::setNumIterations(int iterations)
{
    runSynchronouslyOnVideoProcessingQueue([&] { m_numIterations = std::max(iterations, 1); });
}

} // namespace lamina
