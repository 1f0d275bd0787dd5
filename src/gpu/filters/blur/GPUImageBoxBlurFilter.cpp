// The moving average (Gonzalez and Woods, Digital Image Processing, chapter 3).

#include "gpu/filters/blur/GPUImageBoxBlurFilter.h"

#include "gpu/filters/blur/BlurShaders.h"

#include <algorithm>

namespace lamina {

GPUImageBoxBlurFilter::GPUImageBoxBlurFilter()
    : GPUImageGaussianBlurFilter(boxBlurWeights(kRadiusOfNewFilter), kRadiusOfNewFilter)
{
}

BlurWeights GPUImageBoxBlurFilter::weightsForRadius(double pixels) const
{
    return boxBlurWeights(static_cast<unsigned>(std::clamp(pixels, 0.0, static_cast<double>(kLargestSampleRadius))));
}

std::string GPUImageBoxBlurFilter::vertexShaderForStandardBlurOfRadius(unsigned blurRadius, double)
{
    return standardBlurVertexShader(boxBlurWeights(blurRadius));
}

std::string GPUImageBoxBlurFilter::fragmentShaderForStandardBlurOfRadius(unsigned blurRadius, double)
{
    return standardBlurFragmentShader(boxBlurWeights(blurRadius));
}

std::string GPUImageBoxBlurFilter::vertexShaderForOptimizedBlurOfRadius(unsigned blurRadius, double)
{
    return optimizedBlurVertexShader(boxBlurWeights(blurRadius));
}

std::string GPUImageBoxBlurFilter::fragmentShaderForOptimizedBlurOfRadius(unsigned blurRadius, double)
{
    return optimizedBlurFragmentShader(boxBlurWeights(blurRadius));
}

FilterDescription GPUImageBoxBlurFilter::describe()
{
    return filterDescription<GPUImageBoxBlurFilter>("GPUImageBoxBlurFilter", "blur", 1,
                                                    "Blurs with equal weights for all pixels of a square",
                                                    properties(kRadiusOfNewFilter));
}

} // namespace lamina
