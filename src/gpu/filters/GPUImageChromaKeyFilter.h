#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/GPUVectors.h"
#include "platform/gl/GLHeaders.h"

namespace lamina {

/// Cuts a colour out of a picture, as of a green screen: what has it becomes transparent.
///
///   Y = 0.2989 red + 0.5866 green + 0.1145 blue,   Cr = 0.7132 (red - Y),   Cb = 0.5647 (blue - Y)
///   d = distance of (Cr, Cb) from those of `colorToReplace`
///   t = (d - thresholdSensitivity) / smoothing, cut to 0 to 1
///   out.a = in.a t^2 (3 - 2 t),   out.rgb = in.rgb
///
/// Luma and colour differences are those of Rec. ITU-R BT.601, of straight values as stored: brightness does not count,
/// shadows on the screen go too. A smoothing of 0 or below gives a hard edge.
/// Defaults: threshold 0.4, smoothing 0.1, colour (0, 1, 0), green.
class GPUImageChromaKeyFilter : public GPUImageFilter {
public:
    GPUImageChromaKeyFilter();
    static FilterDescription describe();

    /// Distance up to which a pixel is clear. Two colours are 1.2 apart at the most.
    float thresholdSensitivity() const { return m_thresholdSensitivity; }
    void setThresholdSensitivity(float threshold);
    /// Width of the soft edge beyond it.
    float smoothing() const { return m_smoothing; }
    void setSmoothing(float smoothing);
    const GPUVector3& colorToReplace() const { return m_colorToReplace; }
    void setColorToReplace(const GPUVector3& color);
    void setColorToReplaceRed(float red, float green, float blue) { setColorToReplace({red, green, blue}); }

private:
    GLint m_thresholdSensitivityUniform;
    GLint m_smoothingUniform;
    GLint m_colorToReplaceUniform;
    float m_thresholdSensitivity = 0;
    float m_smoothing = 0;
    GPUVector3 m_colorToReplace;
};

} // namespace lamina
