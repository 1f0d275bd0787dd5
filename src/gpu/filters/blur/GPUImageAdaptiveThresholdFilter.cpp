#include "gpu/filters/blur/GPUImageAdaptiveThresholdFilter.h"

#include "gpu/core/GPUImageTwoInputFilter.h"
#include "gpu/filters/blend/BlendShader.h"
#include "gpu/filters/blur/GPUImageBoxBlurFilter.h"
#include "gpu/filters/color/GPUImageGrayscaleFilter.h"

#include <memory>

namespace lamina {

namespace {

constexpr float kBlurRadius = 4;

} // namespace

GPUImageAdaptiveThresholdFilter::GPUImageAdaptiveThresholdFilter()
    : BlurMixture(
          std::make_shared<GPUImageBoxBlurFilter>(),
          std::make_shared<GPUImageTwoInputFilter>(blendShader("vec4(vec3(step(overlay.r - 0.05, base.r)), base.a)")),
          std::make_shared<GPUImageGrayscaleFilter>())
{
    setBlurRadiusInPixels(kBlurRadius);
}

FilterDescription GPUImageAdaptiveThresholdFilter::describe()
{
    return filterDescription<GPUImageAdaptiveThresholdFilter>(
        "GPUImageAdaptiveThresholdFilter", "colour", 1, "Black and white by the surroundings: for print and writing",
        {filterProperty("blurRadiusInPixels", &BlurMixture::setBlurRadiusInPixels, kBlurRadius, {1, 62}, "pixels",
                        "Surroundings that a pixel is compared with, wider than the strokes")});
}

} // namespace lamina
