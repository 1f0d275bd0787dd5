#include "gpu/filters/blur/GPUImageTiltShiftFilter.h"

#include "gpu/core/GPUImageTwoInputFilter.h"
#include "gpu/filters/blend/BlendShader.h"
#include "gpu/filters/blur/GPUImageGaussianBlurFilter.h"

#include <string>

namespace lamina {

namespace {

constexpr float kTop = 0.4F;
constexpr float kBottom = 0.6F;
constexpr float kRate = 0.2F;
constexpr float kBlurRadius = 7;

constexpr const char* kBlurredShare = R"(
uniform float topFocusLevel;
uniform float bottomFocusLevel;
uniform float focusFallOffRate;

float blurredShare(float y)
{
    float above = 1.0 - ramp(topFocusLevel - focusFallOffRate, topFocusLevel, y);
    float below = ramp(bottomFocusLevel, bottomFocusLevel + focusFallOffRate, y);
    return min(above + below, 1.0);
}
)";

} // namespace

GPUImageTiltShiftFilter::GPUImageTiltShiftFilter()
    : GPUImageTiltShiftFilter(std::make_shared<GPUImageTwoInputFilter>(blendShader(
          "mix(base, overlay, blurredShare(textureCoordinate2.y))", std::string(kRampFunction) + kBlurredShare)))
{
}

GPUImageTiltShiftFilter::GPUImageTiltShiftFilter(const std::shared_ptr<GPUImageTwoInputFilter>& mixture)
    : BlurMixture(std::make_shared<GPUImageGaussianBlurFilter>(), mixture)
    , m_mixture(mixture)
{
    setBlurRadiusInPixels(kBlurRadius);
    setTopFocusLevel(kTop);
    setBottomFocusLevel(kBottom);
    setFocusFallOffRate(kRate);
}

void GPUImageTiltShiftFilter::setTopFocusLevel(float level)
{
    m_topFocusLevel = level;
    m_mixture->setFloat(level, "topFocusLevel");
}

void GPUImageTiltShiftFilter::setBottomFocusLevel(float level)
{
    m_bottomFocusLevel = level;
    m_mixture->setFloat(level, "bottomFocusLevel");
}

void GPUImageTiltShiftFilter::setFocusFallOffRate(float rate)
{
    m_focusFallOffRate = rate;
    m_mixture->setFloat(rate, "focusFallOffRate");
}

FilterDescription GPUImageTiltShiftFilter::describe()
{
    using Self = GPUImageTiltShiftFilter;
    return filterDescription<Self>(
        "GPUImageTiltShiftFilter", "blur", 1, "Leaves a band sharp, as if the picture were of a model",
        {filterProperty("topFocusLevel", &Self::setTopFocusLevel, kTop, {0, 1}, "share of the height",
                        "Where the sharp band begins"),
         filterProperty("bottomFocusLevel", &Self::setBottomFocusLevel, kBottom, {0, 1}, "share of the height",
                        "Where the sharp band ends"),
         filterProperty("focusFallOffRate", &Self::setFocusFallOffRate, kRate, {0, 1}, "share of the height",
                        "Height of the way from sharp to blurred"),
         filterProperty("blurRadiusInPixels", &BlurMixture::setBlurRadiusInPixels, kBlurRadius, {0, 62}, "pixels",
                        "Width of the blur, rounded to whole pixels")});
}

} // namespace lamina
