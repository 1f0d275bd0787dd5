#include "gpu/filters/edge/GPUImageClosingFilter.h"

#include "gpu/filters/edge/GPUImageDilationFilter.h"
#include "gpu/filters/edge/GPUImageErosionFilter.h"

#include <memory>

namespace lamina {

GPUImageClosingFilter::GPUImageClosingFilter(unsigned radius)
    : MorphologyPair(std::make_shared<GPUImageDilationFilter>(radius), std::make_shared<GPUImageErosionFilter>(radius))
{
}

FilterDescription GPUImageClosingFilter::describe()
{
    return describePair<GPUImageClosingFilter>("GPUImageClosingFilter",
                                               "Fills dark specks and gaps, by the red channel; the result is grey");
}

} // namespace lamina
