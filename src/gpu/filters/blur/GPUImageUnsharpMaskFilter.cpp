#include "gpu/filters/blur/GPUImageUnsharpMaskFilter.h"

#include "gpu/core/GPUImageTwoInputFilter.h"
#include "gpu/filters/blend/BlendShader.h"
#include "gpu/filters/blur/GPUImageGaussianBlurFilter.h"

namespace lamina {

namespace {

constexpr float kIntensity = 1;
constexpr float kBlurRadius = 4;

} // namespace

GPUImageUnsharpMaskFilter::GPUImageUnsharpMaskFilter()
    : GPUImageUnsharpMaskFilter(std::make_shared<GPUImageTwoInputFilter>(blendShader(
          "vec4(base.rgb * intensity + overlay.rgb * (1.0 - intensity), base.a)", "uniform float intensity;\n")))
{
}

GPUImageUnsharpMaskFilter::GPUImageUnsharpMaskFilter(const std::shared_ptr<GPUImageTwoInputFilter>& mixture)
    : BlurMixture(std::make_shared<GPUImageGaussianBlurFilter>(), mixture)
    , m_mixture(mixture)
{
    setBlurRadiusInPixels(kBlurRadius);
    setIntensity(kIntensity);
}

void GPUImageUnsharpMaskFilter::setIntensity(float intensity)
{
    m_intensity = intensity;
    m_mixture->setFloat(intensity, "intensity");
}

FilterDescription GPUImageUnsharpMaskFilter::describe()
{
    using Self = GPUImageUnsharpMaskFilter;
    return filterDescription<Self>(
        "GPUImageUnsharpMaskFilter", "blur", 1, "Sharpens by the difference to a blurred copy",
        {filterProperty("intensity", &Self::setIntensity, kIntensity, {0, 4}, "",
                        "1 is the picture as it is, above sharper, below blurred"),
         filterProperty("blurRadiusInPixels", &BlurMixture::setBlurRadiusInPixels, kBlurRadius, {0, 62}, "pixels",
                        "Width of the blur, rounded to whole pixels")});
}

} // namespace lamina
