#include "gpu/filters/edge/GPUImagePrewittEdgeDetectionFilter.h"

namespace lamina {

GPUImagePrewittEdgeDetectionFilter::GPUImagePrewittEdgeDetectionFilter()
    : GPUImageSobelEdgeDetectionFilter(EdgeOperator::Prewitt)
{
}

FilterDescription GPUImagePrewittEdgeDetectionFilter::describe()
{
    return filterDescription<GPUImagePrewittEdgeDetectionFilter>(
        "GPUImagePrewittEdgeDetectionFilter", "edge", 1, "Bright edges on black, a little softer", properties());
}

} // namespace lamina
