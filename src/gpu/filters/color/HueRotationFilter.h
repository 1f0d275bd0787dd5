#pragma once

#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/GPUVectors.h"
#include "gpu/kernels/KernelFrame.h"
#include "platform/gl/GLHeaders.h"

#include <string>

namespace lamina {

/// Turns the hue in the plane of the colour differences I and Q; brightness Y and chroma stay. What the hue filters
/// stand on.
///
///   (Y, I, Q) = A in.rgb,   (I, Q) turned by -a,   out.rgb = B (Y, I, Q),   alpha stays
///
/// A and B are those of the NTSC colour system on stored values; a subclass says two of their rows. The angle a in
/// radians comes of what is set, the rest of its division by 360 (with its sign) times pi / `halfTurn`. Results are cut
/// to 0 to 1.
class HueRotationFilter : public GPUImageFilter {
public:
    /// Radians: what the shader gets, not what was set.
    float hue() const { return m_hue; }
    /// `hue` in the units of the class; default 90.
    void setHue(float hue);

protected:
    /// `rgbToI`: the weights of I, a row of A; `yiqToR`: those of red, a row of B.
    HueRotationFilter(const GPUVector3& rgbToI, const GPUVector3& yiqToR, double halfTurn);

    FilterKernel kernel() const override;

private:
    GPUVector3 m_rgbToI;
    GPUVector3 m_yiqToR;
    double m_halfTurn;
    GLint m_hueAdjustUniform;
    float m_hue = 0;
};

} // namespace lamina
