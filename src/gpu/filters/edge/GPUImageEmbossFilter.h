#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/edge/GPUImage3x3ConvolutionFilter.h"

namespace lamina {

/// Makes edges stand out as if lit from the bottom right: a convolution with the kernel
///
///   -2i  -i   0
///    -i   1   i
///     0   i  2i       i the intensity
///
/// whose weights sum to 1: even areas stay as they are.
class GPUImageEmbossFilter : public GPUImage3x3ConvolutionFilter {
public:
    static FilterDescription describe();

    GPUImageEmbossFilter();

    /// 1 at first; 0 changes nothing, below 0 the light comes from the top left. Any number; 0 to 4 are useful.
    float intensity() const { return m_intensity; }
    /// Replaces the `convolutionKernel`.
    void setIntensity(float intensity);

private:
    float m_intensity = 1;
};

} // namespace lamina
