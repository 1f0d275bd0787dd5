#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilter.h"
#include "platform/gl/GLHeaders.h"

namespace lamina {

/// A pen drawing: the darker, the more sets of slanting lines lie over each other, black on white.
///
///   out.rgb = 0 where Y < 1    and mod(x + y, spacing) <= width,        or Y < 0.75 and mod(x - y, spacing) <= width,
///             or Y < 0.5 and mod(x + y - spacing / 2, spacing) <= width, or Y < 0.3  and mod(x - y - spacing / 2,
///             spacing) <= width;   else 1.   out.a = in.a
///
/// x and y are the pixel's place in shares of the width and height, Y its luminance by Rec. ITU-R BT.709, 0.2125 red +
/// 0.7154 green + 0.0721 blue, on straight values as stored. Lines narrower than a pixel are broken: small pictures
/// want a greater width.
class GPUImageCrosshatchFilter : public GPUImageFilter {
public:
    GPUImageCrosshatchFilter();
    static FilterDescription describe();

    /// From line to line, as a share of the picture's width along a row: 0.03 at first. At 0 and less, what is not
    /// white is black.
    float crossHatchSpacing() const { return m_crossHatchSpacing; }
    void setCrossHatchSpacing(float share);
    /// Of a line along a row, 0.003 at first.
    float lineWidth() const { return m_lineWidth; }
    void setLineWidth(float share);

private:
    GLint m_crossHatchSpacingUniform;
    GLint m_lineWidthUniform;
    float m_crossHatchSpacing = 0;
    float m_lineWidth = 0;
};

} // namespace lamina
