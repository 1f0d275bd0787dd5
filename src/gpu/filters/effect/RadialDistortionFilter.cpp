#include "gpu/filters/effect/RadialDistortionFilter.h"

#include "gpu/filters/color/ColorShaders.h"

#include <utility>

namespace lamina {

namespace {

constexpr float kScale = 0.5F;

constexpr const char* kDeclarations = R"(
uniform float scale;

float square(float x)
{
    return x * x;
}
)";

std::string shaderText(const std::string& factor)
{
    return placedColorShader(circleShader() + kDeclarations, R"(
    float away = distanceFromCenter(place);
    if (away < radius) {
        float factor = )" + factor + R"(;
        place = center + (place - center) * factor;
    }
)");
}

} // namespace

RadialDistortionFilter::RadialDistortionFilter(const std::string& factor, float radius)
    : CircleFilter(shaderText(factor), radius)
    , m_scaleUniform(uniformIndex("scale"))
{
    setScale(kScale);
}

void RadialDistortionFilter::setScale(float scale)
{
    m_scale = scale;
    setFloat(scale, m_scaleUniform, m_filterProgram);
}

std::vector<FilterProperty> RadialDistortionFilter::distortionProperties(float radius, ValueRange scales,
                                                                         std::string help)
{
    std::vector<FilterProperty> properties = circleProperties(radius);
    properties.push_back(
        filterProperty("scale", &RadialDistortionFilter::setScale, kScale, scales, "", std::move(help)));
    return properties;
}

} // namespace lamina
