#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/effect/CenteredFilter.h"
#include "platform/gl/GLHeaders.h"

#include <string>
#include <vector>

namespace lamina {

/// What shaders of a `CircleFilter` begin with: `kAspectRatioShader` and `uniform float radius`.
std::string circleShader();

/// The base of filters that act in a circle, which is round in pictures of all proportions.
class CircleFilter : public CenteredFilter {
public:
    using CenteredFilter::aspectRatio;
    using CenteredFilter::setAspectRatio;

    /// In widths of the picture; 0 and less: there is no circle.
    float radius() const { return m_radius; }
    void setRadius(float radius);

protected:
    CircleFilter(const std::string& fragmentShader, float radius);

    /// `center`, `radius` (this one at first) and `aspectRatio`.
    static std::vector<FilterProperty> circleProperties(float radius);

private:
    GLint m_radiusUniform;
    float m_radius = 0;
};

} // namespace lamina
