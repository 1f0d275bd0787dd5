#pragma once

#include "gpu/filters/effect/CenteredFilter.h"

#include "gpu/core/GPUImageRotationMode.h"

namespace lamina {

/// A whirl: what lies within a circle is turned about its centre, the more the nearer.
///
///   out(c) = in(center + R(theta) (c - center)),   theta = ((radius - d) / radius)^2 * angle * 8   where d < radius
///
/// d is the distance of c from the centre, in shares of the width and height: the circle is as wide and high as the
/// picture's proportions make it. R turns clockwise, so the picture is seen turned counterclockwise. On all four
/// channels, between pixels bilinear; beyond the picture's border its outermost pixels go on.
class GPUImageSwirlFilter : public CenteredFilter {
public:
    GPUImageSwirlFilter();
    static FilterDescription describe();

    /// 1 at first, which turns the centre by 8 radians; 0 leaves all as it is, below 0 it turns the other way round.
    float angle() const { return m_angle; }
    void setAngle(float angle);
    /// 0.5 at first: the circle touches the borders. 0 or less leaves all as it is.
    float radius() const { return m_radius; }
    void setRadius(float radius);

    void setInputRotation(GPUImageRotationMode rotation, int textureIndex) override;

private:
    void tellAngle();

    GLint m_angleUniform;
    GLint m_radiusUniform;
    float m_angle = 0;
    float m_radius = 0;
};

} // namespace lamina
