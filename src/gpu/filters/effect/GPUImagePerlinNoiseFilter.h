#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/GPUVectors.h"
#include "platform/gl/GLHeaders.h"

namespace lamina {

/// Clouds of one colour in another, of the input's size; nothing of its content is looked at.
///
///   out = start + (finish - start) (n + 1) / 2   on all four channels, straight
///
/// n is gradient noise of the place in shares of the width and height, times `scale` (K. Perlin, An Image Synthesizer,
/// 1985), from -1 to 1: the gradients at the corners of a square, 41 directions drawn by the permutation (34 x^2 + x)
/// mod 289, mixed by 6 t^5 - 15 t^4 + 10 t^3 and scaled by 2.3 (I. McEwan, D. Sheets, M. Richardson, S. Gustavson,
/// Efficient Computational Noise in GLSL, 2012). It repeats after 289 squares.
///
/// The permutation is of whole numbers up to eleven million, for which a device without high precision in fragment
/// shaders has no room: there the filter can't render, and the log names it.
class GPUImagePerlinNoiseFilter : public GPUImageFilter {
public:
    GPUImagePerlinNoiseFilter();
    static FilterDescription describe();

    /// What the deepest valleys are: opaque black at first.
    const GPUVector4& colorStart() const { return m_colorStart; }
    void setColorStart(const GPUVector4& color);
    /// What the highest hills are: opaque white at first.
    const GPUVector4& colorFinish() const { return m_colorFinish; }
    void setColorFinish(const GPUVector4& color);
    /// Squares across and down: 8 at first. 0 gives the mixture of both halves.
    float scale() const { return m_scale; }
    void setScale(float squares);

private:
    GLint m_colorStartUniform;
    GLint m_colorFinishUniform;
    GLint m_scaleUniform;
    GPUVector4 m_colorStart;
    GPUVector4 m_colorFinish;
    float m_scale = 0;
};

} // namespace lamina
