#include "gpu/filters/blur/GPUImageBilateralFilter.h"

#include "gpu/filters/blur/BlurShaders.h"
#include "gpu/filters/blur/NineSampleShader.h"
#include "gpu/filters/blur/StepVertexShader.h"

#include <string>

namespace lamina {

namespace {

constexpr float kSpacing = 4;
constexpr float kFactor = 8;

std::string fragmentShader()
{
    NineSamples samples;
    samples.stride = "singleStepOffset";
    samples.declarations = R"(
varying highp vec2 singleStepOffset;
uniform float distanceNormalizationFactor;

float total = 0.0;
)";
    samples.addition = R"(weight *= 1.0 - min(distance(pixel, color) * distanceNormalizationFactor, 1.0);
    sum += color * weight;
    total += weight;)";
    samples.result = "sum / total"; // the pixel itself always counts
    return nineSampleShader(samples);
}

} // namespace

GPUImageBilateralFilter::GPUImageBilateralFilter()
    : GPUImageGaussianBlurFilter(BlurWeights{1}, 0)
{
    switchToVertexShader(kStepVertexShader, fragmentShader());
    m_firstUniform = uniformIndex("distanceNormalizationFactor");
    m_secondUniform = secondUniformIndex("distanceNormalizationFactor");
    setTexelSpacingMultiplier(kSpacing);
    setDistanceNormalizationFactor(kFactor);
}

void GPUImageBilateralFilter::setDistanceNormalizationFactor(float factor)
{
    m_distanceNormalizationFactor = factor;
    setFloat(factor, m_firstUniform, m_filterProgram);
    setFloat(factor, m_secondUniform, m_secondFilterProgram);
}

FilterDescription GPUImageBilateralFilter::describe()
{
    using Self = GPUImageBilateralFilter;
    return filterDescription<Self>(
        "GPUImageBilateralFilter", "blur", 1, "Smooths areas and leaves edges sharp",
        {filterProperty("distanceNormalizationFactor", &Self::setDistanceNormalizationFactor, kFactor, {0, 32}, "",
                        "The higher, the smaller the differences that count as edges"),
         filterProperty("texelSpacingMultiplier", &Self::setTexelSpacingMultiplier, kSpacing, {1, 8}, "pixels",
                        "Distance of the nine samples"),
         filterProperty("blurPasses", &Self::setBlurPasses, 1, {1, 8}, "", "How often the whole filter is done")});
}

} // namespace lamina
