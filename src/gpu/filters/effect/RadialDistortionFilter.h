#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/TypedValue.h"
#include "gpu/filters/effect/CircleFilter.h"
#include "platform/gl/GLHeaders.h"

#include <string>
#include <vector>

namespace lamina {

/// The base of filters that move what lies in a circle towards its centre, or away from it.
///
///   out(c) = in(center + p (c - center))   where d < radius,   out = in elsewhere
///
/// d is the distance of c from the centre, and p the filter's own. On all four channels, between pixels bilinear;
/// beyond the picture's border its outermost pixels go on.
class RadialDistortionFilter : public CircleFilter {
public:
    /// The strength: 0.5 at first.
    float scale() const { return m_scale; }
    void setScale(float scale);

protected:
    /// `factor`: p, an expression of `away` (d), `radius` and `scale`; `square` squares.
    RadialDistortionFilter(const std::string& factor, float radius);

    static std::vector<FilterProperty> distortionProperties(float radius, ValueRange scales, std::string help);

private:
    GLint m_scaleUniform;
    float m_scale = 0;
};

} // namespace lamina
