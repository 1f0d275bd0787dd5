#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/GPUVectors.h"
#include "gpu/kernels/KernelFrame.h"
#include "platform/gl/GLHeaders.h"

namespace lamina {

/// Colours a picture by its luminance, from one colour for black to another for white.
///
///   out.rgb = first + (second - first) Y,   Y = 0.2125 red + 0.7154 green + 0.0721 blue,   out.a = in.a
///
/// Luma weights: Rec. ITU-R BT.709, on straight values as stored. Defaults: first (0, 0, 0.5), a dark blue, and second
/// (1, 0, 0), red.
class GPUImageFalseColorFilter : public GPUImageFilter {
public:
    GPUImageFalseColorFilter();
    static FilterDescription describe();

    /// What black becomes: red, green, blue; the fourth number is kept and used by nobody.
    const GPUVector4& firstColor() const { return m_firstColor; }
    void setFirstColor(const GPUVector4& color);
    /// What white becomes: red, green, blue; the fourth number is kept and used by nobody.
    const GPUVector4& secondColor() const { return m_secondColor; }
    void setSecondColor(const GPUVector4& color);

protected:
    FilterKernel kernel() const override;

private:
    GLint m_firstColorUniform;
    GLint m_secondColorUniform;
    GPUVector4 m_firstColor;
    GPUVector4 m_secondColor;
};

} // namespace lamina
