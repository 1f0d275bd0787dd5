#include "gpu/filters/edge/GPUImageRGBClosingFilter.h"

#include "gpu/filters/edge/GPUImageRGBDilationFilter.h"
#include "gpu/filters/edge/GPUImageRGBErosionFilter.h"

#include <memory>

namespace lamina {

GPUImageRGBClosingFilter::GPUImageRGBClosingFilter(unsigned radius)
    : MorphologyPair(std::make_shared<GPUImageRGBDilationFilter>(radius),
                     std::make_shared<GPUImageRGBErosionFilter>(radius))
{
}

FilterDescription GPUImageRGBClosingFilter::describe()
{
    return describePair<GPUImageRGBClosingFilter>("GPUImageRGBClosingFilter", "Fills dark specks and gaps, in colour");
}

} // namespace lamina
