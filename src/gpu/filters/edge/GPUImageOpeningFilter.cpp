#include "gpu/filters/edge/GPUImageOpeningFilter.h"

#include "gpu/filters/edge/GPUImageDilationFilter.h"
#include "gpu/filters/edge/GPUImageErosionFilter.h"

#include <memory>

namespace lamina {

GPUImageOpeningFilter::GPUImageOpeningFilter(unsigned radius)
    : MorphologyPair(std::make_shared<GPUImageErosionFilter>(radius), std::make_shared<GPUImageDilationFilter>(radius))
{
}

FilterDescription GPUImageOpeningFilter::describe()
{
    return describePair<GPUImageOpeningFilter>("GPUImageOpeningFilter",
                                               "Removes bright specks, by the red channel; the result is grey");
}

} // namespace lamina
