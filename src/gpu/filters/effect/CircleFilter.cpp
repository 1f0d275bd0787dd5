#include "gpu/filters/effect/CircleFilter.h"

#include "gpu/core/AspectRatioFilter.h"

namespace lamina {

std::string circleShader()
{
    return std::string(kAspectRatioShader) + "\nuniform float radius;\n";
}

CircleFilter::CircleFilter(const std::string& fragmentShader, float radius)
    : CenteredFilter(fragmentShader)
    , m_radiusUniform(uniformIndex("radius"))
{
    setRadius(radius);
}

void CircleFilter::setRadius(float radius)
{
    m_radius = radius;
    setFloat(radius, m_radiusUniform, m_filterProgram);
}

std::vector<FilterProperty> CircleFilter::circleProperties(float radius)
{
    return {centerProperty(),
            filterProperty("radius", &CircleFilter::setRadius, radius, {0, 1}, "share of the width",
                           "How far from the middle it reaches"),
            aspectRatioProperty()};
}

} // namespace lamina
