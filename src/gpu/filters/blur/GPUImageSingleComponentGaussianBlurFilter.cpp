#include "gpu/filters/blur/GPUImageSingleComponentGaussianBlurFilter.h"

#include "gpu/filters/blur/BlurShaders.h"

namespace lamina {

GPUImageSingleComponentGaussianBlurFilter::GPUImageSingleComponentGaussianBlurFilter()
    : GPUImageGaussianBlurFilter(gaussianBlurWeights(kRadiusOfNewFilter, static_cast<double>(kSigmaOfNewFilter)),
                                 kSigmaOfNewFilter, BlurChannels::Red)
{
}

std::string GPUImageSingleComponentGaussianBlurFilter::fragmentShaderForStandardBlurOfRadius(unsigned blurRadius,
                                                                                             double sigma)
{
    return standardBlurFragmentShader(gaussianBlurWeights(blurRadius, sigma), BlurChannels::Red);
}

std::string GPUImageSingleComponentGaussianBlurFilter::fragmentShaderForOptimizedBlurOfRadius(unsigned blurRadius,
                                                                                              double sigma)
{
    return optimizedBlurFragmentShader(gaussianBlurWeights(blurRadius, sigma), BlurChannels::Red);
}

FilterDescription GPUImageSingleComponentGaussianBlurFilter::describe()
{
    return filterDescription<GPUImageSingleComponentGaussianBlurFilter>(
        "GPUImageSingleComponentGaussianBlurFilter", "blur", 1,
        "Blurs the red channel with a Gaussian bell, in shades of grey", properties(kSigmaOfNewFilter));
}

} // namespace lamina
