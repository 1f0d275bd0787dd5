#pragma once

#include "gpu/filters/effect/CircleFilter.h"

namespace lamina {

/// The whole picture, upside down, as seen through a ball of glass; nothing around it.
///
///   out(c) = in((v.xy + 1) / 2)   where d < radius,   0 on all four channels elsewhere,
///   v = refract((0, 0, -1), n, refractiveIndex),   n = (w / radius, sqrt(1 - (d / radius)^2))
///
/// w is the way from the centre to c, d its length, n the normal of the sphere's front; refract follows Snell's law.
/// `radius` is 0.25 at first. Between pixels bilinear.
class GPUImageSphereRefractionFilter : public CircleFilter {
public:
    GPUImageSphereRefractionFilter();
    static FilterDescription describe();

    /// That of what is around over that of the ball: 0.71 at first, glass in air. What bends the light so far that none
    /// comes through shows the picture's middle.
    float refractiveIndex() const { return m_refractiveIndex; }
    void setRefractiveIndex(float index);

protected:
    /// `declarations` and `statements` as of `placedColorShader`; the latter, for a pixel within the ball, may change
    /// `color`, and both know `refractiveIndex`. `turn` multiplies v.xy; the normal is `vec3 normal`.
    GPUImageSphereRefractionFilter(const std::string& turn, const std::string& declarations,
                                   const std::string& statements);

    static std::vector<FilterProperty> sphereProperties();

private:
    GLint m_refractiveIndexUniform;
    float m_refractiveIndex = 0;
};

} // namespace lamina
