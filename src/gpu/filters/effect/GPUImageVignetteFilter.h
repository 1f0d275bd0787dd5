#pragma once

#include "gpu/core/GPUVectors.h"
#include "gpu/filters/effect/CenteredFilter.h"
#include "platform/base/CGGeometry.h"

namespace lamina {

/// Fades to a colour towards the corners, as old lenses do.
///
///   out.rgb = in.rgb + (color - in.rgb) smoothstep(start, end, d),   out.a = in.a
///
/// d is the distance from the centre in shares of the width and height (0.5 at the middle of a border, 0.707 at a
/// corner), smoothstep Hermite's t^2 (3 - 2 t) of t = (d - start) / (end - start), cut to 0 to 1. Straight, as stored.
class GPUImageVignetteFilter : public CenteredFilter {
public:
    GPUImageVignetteFilter();
    static FilterDescription describe();

    /// (0.5, 0.5) at first.
    CGPoint vignetteCenter() const { return center(); }
    void setVignetteCenter(CGPoint center) { setCenter(center); }
    /// What is faded to: black at first.
    const GPUVector3& vignetteColor() const { return m_color; }
    void setVignetteColor(const GPUVector3& color);
    /// The distance at which the fade begins: 0.3 at first.
    float vignetteStart() const { return m_start; }
    void setVignetteStart(float distance);
    /// The distance at which nothing of the picture is left: 0.75 at first. Not above the start: a hard edge there.
    float vignetteEnd() const { return m_end; }
    void setVignetteEnd(float distance);

private:
    GLint m_colorUniform;
    GLint m_startUniform;
    GLint m_endUniform;
    GPUVector3 m_color;
    float m_start = 0;
    float m_end = 0;
};

} // namespace lamina
