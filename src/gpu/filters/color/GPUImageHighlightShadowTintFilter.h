#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/GPUVectors.h"
#include "platform/gl/GLHeaders.h"

namespace lamina {

/// Split toning: gives shadows one tint and highlights another.
///
///   dark   = shadowTintIntensity shadowTint
///   bright = 1 + highlightTintIntensity (highlightTint - 1)
///   out.rgb = in.rgb - Y + dark + (bright - dark) Y,   out.a = in.a
///
/// Y = 0.2125 red + 0.7154 green + 0.0721 blue (Rec. ITU-R BT.709), on straight values as stored. The greys, a line
/// from black to white, become the line from `dark` to `bright`, each end mixed from black or white towards its tint,
/// and every colour keeps its distance from its grey; the result is cut to 0 to 1. The line rises wherever its ends do,
/// at any intensity. The formula is this library's own. Defaults: both intensities 0, the picture as it is; a blue for
/// the shadows, (0, 0.2, 0.4), and a warm white for the highlights, (1, 0.85, 0.6).
class GPUImageHighlightShadowTintFilter : public GPUImageFilter {
public:
    GPUImageHighlightShadowTintFilter();
    static FilterDescription describe();

    /// Share of the tint in black, 0 to 1.
    float shadowTintIntensity() const { return m_shadowTintIntensity; }
    void setShadowTintIntensity(float intensity);
    /// Share of the tint in white, 0 to 1.
    float highlightTintIntensity() const { return m_highlightTintIntensity; }
    void setHighlightTintIntensity(float intensity);
    /// Red, green, blue; the fourth number is kept and used by nobody.
    const GPUVector4& shadowTintColor() const { return m_shadowTintColor; }
    void setShadowTintColor(const GPUVector4& color);
    /// Red, green, blue; the fourth number is kept and used by nobody.
    const GPUVector4& highlightTintColor() const { return m_highlightTintColor; }
    void setHighlightTintColor(const GPUVector4& color);

private:
    GLint m_shadowTintIntensityUniform;
    GLint m_highlightTintIntensityUniform;
    GLint m_shadowTintColorUniform;
    GLint m_highlightTintColorUniform;
    float m_shadowTintIntensity = 0;
    float m_highlightTintIntensity = 0;
    GPUVector4 m_shadowTintColor;
    GPUVector4 m_highlightTintColor;
};

} // namespace lamina
