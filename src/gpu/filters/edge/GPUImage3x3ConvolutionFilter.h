#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImage3x3TextureSamplingFilter.h"
#include "gpu/core/GPUVectors.h"
#include "gpu/kernels/KernelFrame.h"
#include "platform/gl/GLHeaders.h"

#include <vector>

namespace lamina {

/// Weighs a pixel and its neighbours by a matrix.
///
///   out.rgb = sum over rows r and columns c of kernel[r][c] * in.rgb(p + (c - 1, r - 1)),   out.a = in.a(p)
///
/// `in` straight, as stored; the result is cut to 0..1. The kernel's first stored row weighs the row above, the first
/// number of a row the pixel to the left. Nothing is divided: weights that sum to 1 keep the brightness.
class GPUImage3x3ConvolutionFilter : public GPUImage3x3TextureSamplingFilter {
public:
    static FilterDescription describe();

    GPUImage3x3ConvolutionFilter();

    /// 1 in the centre at first, which changes nothing. Devices may hold the weights with no more than ten bits.
    const GPUMatrix3x3& convolutionKernel() const { return m_convolutionKernel; }
    void setConvolutionKernel(const GPUMatrix3x3& kernel);

protected:
    FilterKernel kernel() const override;

    /// What is to be set, with this kernel in a new filter.
    static std::vector<FilterProperty> kernelProperties(const GPUMatrix3x3& kernel);

private:
    GLint m_convolutionMatrixUniform;
    GPUMatrix3x3 m_convolutionKernel;
};

} // namespace lamina
