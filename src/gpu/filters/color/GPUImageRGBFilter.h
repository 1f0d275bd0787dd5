#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/kernels/KernelFrame.h"
#include "platform/gl/GLHeaders.h"

namespace lamina {

/// Multiplies each channel by a factor of its own.
///
///   out.rgb = (red, green, blue) in.rgb,   out.a = in.a
///
/// On straight values as stored; the result is cut to 0 to 1. Default 1 each, the picture as it is.
class GPUImageRGBFilter : public GPUImageFilter {
public:
    GPUImageRGBFilter();
    static FilterDescription describe();

    /// The factors.
    float red() const { return m_red; }
    void setRed(float red);
    float green() const { return m_green; }
    void setGreen(float green);
    float blue() const { return m_blue; }
    void setBlue(float blue);

protected:
    FilterKernel kernel() const override;

private:
    GLint m_redUniform;
    GLint m_greenUniform;
    GLint m_blueUniform;
    float m_red = 0;
    float m_green = 0;
    float m_blue = 0;
};

} // namespace lamina
