#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilter.h"
#include "platform/gl/GLHeaders.h"

namespace lamina {

/// Lightens the shadows and darkens the highlights of a picture; what is neither stays.
///
///   lifted   = u - 0.76 u^2,   u = Y^(1 / (1 + shadows))
///   lowered  = 1 - (v - 0.8 v^2),   v = (1 - Y)^(1 / (2 - highlights))
///   out.rgb  = in.rgb Y' / Y,   Y' = max(Y, lifted) + min(Y, lowered) - Y,   out.a = in.a
///
/// Y = 0.2125 red + 0.7154 green + 0.0721 blue (Rec. ITU-R BT.709), on straight values as stored. A power curve raises
/// what is dark; the square taken from it bends the curve back below the picture's own luminance before the middle is
/// reached, so that only shadows are lifted: up to luminance 0.33 at most, and highlights lowered down to 0.69. Colours
/// keep the ratios of their channels and are cut to 0 to 1; black stays. Both curves are this library's own but for the
/// two constants; up to the ends of the ranges they rise with Y, and with (or against) the values.
/// Values beyond 0 to 1 act as the nearer end. Defaults: shadows 0, highlights 1, the picture as it is.
class GPUImageHighlightShadowFilter : public GPUImageFilter {
public:
    GPUImageHighlightShadowFilter();
    static FilterDescription describe();

    /// From 0, as they are, to 1, as light as they get.
    float shadows() const { return m_shadows; }
    void setShadows(float shadows);
    /// From 1, as they are, down to 0, as dark as they get.
    float highlights() const { return m_highlights; }
    void setHighlights(float highlights);

private:
    GLint m_shadowsUniform;
    GLint m_highlightsUniform;
    float m_shadows = 0;
    float m_highlights = 1;
};

} // namespace lamina
