#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/GPUVectors.h"
#include "gpu/kernels/KernelFrame.h"
#include "platform/gl/GLHeaders.h"

namespace lamina {

/// Mixes the four channels of each pixel by a matrix.
///
///   out = intensity (M in) + (1 - intensity) in
///
/// A record of `colorMatrix` is a row of M: `one` weighs (red, green, blue, alpha) for red, `four` for alpha. `in` is
/// straight, as stored; nothing is linearised. Defaults: the identity, intensity 1. Intensities outside 0 to 1
/// extrapolate; the result is cut to 0 to 1 when it is stored.
class GPUImageColorMatrixFilter : public GPUImageFilter {
public:
    GPUImageColorMatrixFilter();
    static FilterDescription describe();

    /// Share of the mixed colour.
    float intensity() const { return m_intensity; }
    void setIntensity(float intensity);
    /// M, by rows.
    const GPUMatrix4x4& colorMatrix() const { return m_colorMatrix; }
    void setColorMatrix(const GPUMatrix4x4& matrix);

protected:
    FilterKernel kernel() const override;

private:
    GLint m_intensityUniform;
    GLint m_colorMatrixUniform;
    float m_intensity = 0;
    GPUMatrix4x4 m_colorMatrix;
};

} // namespace lamina
