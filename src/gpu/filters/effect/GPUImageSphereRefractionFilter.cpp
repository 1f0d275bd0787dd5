#include "gpu/filters/effect/GPUImageSphereRefractionFilter.h"

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/color/ColorShaders.h"

#include <string>
#include <vector>

namespace lamina {

namespace {

constexpr float kRadius = 0.25F;
constexpr float kRefractiveIndex = 0.71F;

std::string shaderText(const std::string& turn, const std::string& declarations, const std::string& statements)
{
    return placedColorShader(circleShader() + "uniform float refractiveIndex;\n" + declarations, R"(
    vec3 normal = vec3(0.0, 0.0, 1.0);
    bool isInside = distanceFromCenter(place) < radius;
    if (isInside) {
        vec2 way = wayFromCenter(place) / radius;
        normal = vec3(way, sqrt(max(1.0 - dot(way, way), 0.0)));
        vec3 ray = refract(vec3(0.0, 0.0, -1.0), normal, refractiveIndex);
        place = ()" + turn + R"( * ray.xy + 1.0) * 0.5;
    }
)",
                             statements + "\n    gl_FragColor = isInside ? color : vec4(0.0);");
}

} // namespace

GPUImageSphereRefractionFilter::GPUImageSphereRefractionFilter()
    : GPUImageSphereRefractionFilter("1.0", "", "")
{
}

GPUImageSphereRefractionFilter::GPUImageSphereRefractionFilter(const std::string& turn, const std::string& declarations,
                                                               const std::string& statements)
    : CircleFilter(shaderText(turn, declarations, statements), kRadius)
    , m_refractiveIndexUniform(uniformIndex("refractiveIndex"))
{
    setRefractiveIndex(kRefractiveIndex);
}

void GPUImageSphereRefractionFilter::setRefractiveIndex(float index)
{
    m_refractiveIndex = index;
    setFloat(index, m_refractiveIndexUniform, m_filterProgram);
}

std::vector<FilterProperty> GPUImageSphereRefractionFilter::sphereProperties()
{
    std::vector<FilterProperty> properties = circleProperties(kRadius);
    properties.push_back(filterProperty("refractiveIndex", &GPUImageSphereRefractionFilter::setRefractiveIndex,
                                        kRefractiveIndex, {0, 1}, "", "Air's over the ball's; 0.71 for glass"));
    return properties;
}

FilterDescription GPUImageSphereRefractionFilter::describe()
{
    return filterDescription<GPUImageSphereRefractionFilter>("GPUImageSphereRefractionFilter", "effect", 1,
                                                             "The picture upside down in a ball of glass",
                                                             sphereProperties());
}

} // namespace lamina
