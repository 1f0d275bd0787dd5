#include "gpu/filters/edge/GPUImageColourFASTFeatureDetector.h"

#include "gpu/filters/blur/GPUImageBoxBlurFilter.h"
#include "gpu/filters/edge/GPUImageColourFASTSamplingOperation.h"

#include <memory>

namespace lamina {

namespace {

constexpr float kStart = 3;

} // namespace

GPUImageColourFASTFeatureDetector::GPUImageColourFASTFeatureDetector()
    : BlurMixture(std::make_shared<GPUImageBoxBlurFilter>(), std::make_shared<GPUImageColourFASTSamplingOperation>())
{
    setBlurRadiusInPixels(kStart);
}

FilterDescription GPUImageColourFASTFeatureDetector::describe()
{
    using Self = GPUImageColourFASTFeatureDetector;
    return filterDescription<Self>("GPUImageColourFASTFeatureDetector", "detection", 1,
                                   "How colours differ from what is around, and which way; alpha tells the angle",
                                   {filterProperty("blurRadiusInPixels", &Self::setBlurRadiusInPixels, kStart, {0, 20},
                                                   "pixels", "How much the surroundings are blurred")});
}

} // namespace lamina
