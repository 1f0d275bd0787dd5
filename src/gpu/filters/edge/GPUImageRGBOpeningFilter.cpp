#include "gpu/filters/edge/GPUImageRGBOpeningFilter.h"

#include "gpu/filters/edge/GPUImageRGBDilationFilter.h"
#include "gpu/filters/edge/GPUImageRGBErosionFilter.h"

#include <memory>

namespace lamina {

GPUImageRGBOpeningFilter::GPUImageRGBOpeningFilter(unsigned radius)
    : MorphologyPair(std::make_shared<GPUImageRGBErosionFilter>(radius),
                     std::make_shared<GPUImageRGBDilationFilter>(radius))
{
}

FilterDescription GPUImageRGBOpeningFilter::describe()
{
    return describePair<GPUImageRGBOpeningFilter>("GPUImageRGBOpeningFilter", "Removes bright specks, in colour");
}

} // namespace lamina
