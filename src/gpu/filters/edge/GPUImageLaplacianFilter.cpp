// The discrete Laplacian with diagonals (Gonzalez and Woods, Digital Image Processing, chapter 3).

#include "gpu/filters/edge/GPUImageLaplacianFilter.h"

#include "gpu/core/GPUVectors.h"

namespace lamina {

namespace {

constexpr GPUMatrix3x3 kLaplacian{{1, 1, 1}, {1, -8, 1}, {1, 1, 1}};

} // namespace

GPUImageLaplacianFilter::GPUImageLaplacianFilter()
{
    setConvolutionKernel(kLaplacian);
}

FilterDescription GPUImageLaplacianFilter::describe()
{
    return filterDescription<GPUImageLaplacianFilter>("GPUImageLaplacianFilter", "edge", 1,
                                                      "Thin lines along edges, in colour on black",
                                                      kernelProperties(kLaplacian));
}

} // namespace lamina
