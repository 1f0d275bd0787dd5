#include "gpu/filters/blur/GPUImageGaussianBlurPositionFilter.h"

#include "gpu/filters/blur/NineSampleShader.h"
#include "gpu/filters/blur/StepVertexShader.h"

#include <string>

namespace lamina {

namespace {

constexpr float kBlurSize = 2;
constexpr float kRadius = 0.25F;

std::string fragmentShader()
{
    NineSamples samples;
    samples.stride = "singleStepOffset";
    samples.declarations =
        std::string("varying highp vec2 singleStepOffset;\nuniform highp float blurRadius;\n") + kAspectRatioShader;
    samples.result = "mix(sum, pixel, step(blurRadius, distanceFromCenter(textureCoordinate)))";
    return nineSampleShader(samples);
}

} // namespace

GPUImageGaussianBlurPositionFilter::GPUImageGaussianBlurPositionFilter()
    : AspectRatioFilter(kStepVertexShader, fragmentShader(), kStepVertexShader, fragmentShader())
    , m_firstRadiusUniform(uniformIndex("blurRadius"))
    , m_secondRadiusUniform(secondUniformIndex("blurRadius"))
{
    setBlurSize(kBlurSize);
    setBlurRadius(kRadius);
}

void GPUImageGaussianBlurPositionFilter::setBlurSize(float pixels)
{
    setVerticalTexelSpacing(static_cast<double>(pixels));
    setHorizontalTexelSpacing(static_cast<double>(pixels));
}

void GPUImageGaussianBlurPositionFilter::setBlurRadius(float radius)
{
    m_blurRadius = radius;
    setFloat(radius, m_firstRadiusUniform, m_filterProgram);
    setFloat(radius, m_secondRadiusUniform, m_secondFilterProgram);
}

FilterDescription GPUImageGaussianBlurPositionFilter::describe()
{
    using Self = GPUImageGaussianBlurPositionFilter;
    return filterDescription<Self>("GPUImageGaussianBlurPositionFilter", "blur", 1, "Blurs within a circle",
                                   {filterProperty("blurSize", &Self::setBlurSize, kBlurSize, {0, 8}, "pixels",
                                                   "Distance of the nine samples; more blurs wider"),
                                    filterProperty("blurCenter", &Self::setBlurCenter, kMiddle, {0, 1},
                                                   "share of the size", "Middle of the circle"),
                                    filterProperty("blurRadius", &Self::setBlurRadius, kRadius, {0, 1},
                                                   "share of the width", "Radius of the circle"),
                                    aspectRatioProperty()});
}

} // namespace lamina
