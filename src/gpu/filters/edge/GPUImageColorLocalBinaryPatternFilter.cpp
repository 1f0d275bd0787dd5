#include "gpu/filters/edge/GPUImageColorLocalBinaryPatternFilter.h"

#include "gpu/filters/edge/BinaryPatternShader.h"

namespace lamina {

GPUImageColorLocalBinaryPatternFilter::GPUImageColorLocalBinaryPatternFilter()
    : GPUImage3x3TextureSamplingFilter(binaryPatternShader(NeighbourValue::Rgb))
{
}

FilterDescription GPUImageColorLocalBinaryPatternFilter::describe()
{
    return filterDescription<GPUImageColorLocalBinaryPatternFilter>(
        "GPUImageColorLocalBinaryPatternFilter", "detection", 1, "Which neighbours are brighter, in each colour",
        texelProperties());
}

} // namespace lamina
