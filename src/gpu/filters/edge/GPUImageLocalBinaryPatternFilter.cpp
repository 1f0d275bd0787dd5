#include "gpu/filters/edge/GPUImageLocalBinaryPatternFilter.h"

#include "gpu/filters/edge/BinaryPatternShader.h"

namespace lamina {

GPUImageLocalBinaryPatternFilter::GPUImageLocalBinaryPatternFilter()
    : GPUImage3x3TextureSamplingFilter(binaryPatternShader(NeighbourValue::Red))
{
}

FilterDescription GPUImageLocalBinaryPatternFilter::describe()
{
    return filterDescription<GPUImageLocalBinaryPatternFilter>("GPUImageLocalBinaryPatternFilter", "detection", 1,
                                                               "Which neighbours are brighter, by the red channel",
                                                               texelProperties());
}

} // namespace lamina
