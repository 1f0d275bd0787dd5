#include "gpu/filters/edge/GPUImageNonMaximumSuppressionFilter.h"

#include "gpu/filters/edge/SuppressionShader.h"

namespace lamina {

GPUImageNonMaximumSuppressionFilter::GPUImageNonMaximumSuppressionFilter()
    : GPUImage3x3TextureSamplingFilter(suppressionShader(SuppressedValue::Red, "", "1.0"))
{
}

FilterDescription GPUImageNonMaximumSuppressionFilter::describe()
{
    return filterDescription<GPUImageNonMaximumSuppressionFilter>("GPUImageNonMaximumSuppressionFilter", "detection", 1,
                                                                  "Keeps the peaks of red, blackens what is beside",
                                                                  texelProperties());
}

} // namespace lamina
