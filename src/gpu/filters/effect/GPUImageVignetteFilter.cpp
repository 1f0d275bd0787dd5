#include "gpu/filters/effect/GPUImageVignetteFilter.h"

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/color/ColorShaders.h"

#include <string>

namespace lamina {

namespace {

constexpr GPUVector3 kBlack{0, 0, 0};
constexpr float kStart = 0.3F;
constexpr float kEnd = 0.75F;

constexpr const char* kUniforms = R"(
uniform vec2 center;
uniform vec3 vignetteColor;
uniform float vignetteStart;
uniform float vignetteEnd;
)";

// GLSL leaves open what smoothstep is where the end is not above the start.
constexpr const char* kStatements = R"(
    float end = max(vignetteEnd, vignetteStart + 0.00001);
    float share = smoothstep(vignetteStart, end, distance(textureCoordinate, center));
    gl_FragColor = vec4(mix(color.rgb, vignetteColor, share), color.a);
)";

} // namespace

GPUImageVignetteFilter::GPUImageVignetteFilter()
    : CenteredFilter(colorShader(kUniforms, kStatements))
    , m_colorUniform(uniformIndex("vignetteColor"))
    , m_startUniform(uniformIndex("vignetteStart"))
    , m_endUniform(uniformIndex("vignetteEnd"))
{
    setVignetteColor(kBlack);
    setVignetteStart(kStart);
    setVignetteEnd(kEnd);
}

FilterDescription GPUImageVignetteFilter::describe()
{
    using Self = GPUImageVignetteFilter;
    const std::string unit = "share of width and height";
    return filterDescription<Self>(
        "GPUImageVignetteFilter", "effect", 1, "Fades to a colour towards the corners",
        {centerProperty("vignetteCenter"),
         filterProperty("vignetteColor", &Self::setVignetteColor, kBlack, {0, 1}, "", "What is faded to"),
         filterProperty("vignetteStart", &Self::setVignetteStart, kStart, {0, 1}, unit,
                        "Distance from the middle at which the fade begins"),
         filterProperty("vignetteEnd", &Self::setVignetteEnd, kEnd, {0, 1}, unit,
                        "Distance at which nothing of the picture is left")});
}

void GPUImageVignetteFilter::setVignetteColor(const GPUVector3& color)
{
    m_color = color;
    setVec3(color, m_colorUniform, m_filterProgram);
}

void GPUImageVignetteFilter::setVignetteStart(float distance)
{
    m_start = distance;
    setFloat(distance, m_startUniform, m_filterProgram);
}

void GPUImageVignetteFilter::setVignetteEnd(float distance)
{
    m_end = distance;
    setFloat(distance, m_endUniform, m_filterProgram);
}

} // namespace lamina
