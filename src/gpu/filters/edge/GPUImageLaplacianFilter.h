#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/edge/GPUImage3x3ConvolutionFilter.h"

namespace lamina {

/// Shows where brightness bends: thin lines in colour on the dark side of edges, black where the picture is even. A
/// convolution with the kernel
///
///   1   1  1
///   1  -8  1
///   1   1  1
///
/// the second derivatives across, down and along both diagonals. What is below 0, on the bright side, is cut off.
/// Another `convolutionKernel` may be set.
class GPUImageLaplacianFilter : public GPUImage3x3ConvolutionFilter {
public:
    static FilterDescription describe();

    GPUImageLaplacianFilter();
};

} // namespace lamina
