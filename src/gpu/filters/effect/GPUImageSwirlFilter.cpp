#include "gpu/filters/effect/GPUImageSwirlFilter.h"

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "gpu/filters/color/ColorShaders.h"

namespace lamina {

namespace {

constexpr float kAngle = 1;
constexpr float kRadius = 0.5F;

constexpr const char* kUniforms = R"(
uniform vec2 center;
uniform float angle;
uniform float radius;
)";

constexpr const char* kPlacing = R"(
    vec2 way = place - center;
    float away = length(way);
    if (away < radius) {
        float nearness = (radius - away) / radius;
        float theta = nearness * nearness * angle * 8.0;
        float s = sin(theta);
        float c = cos(theta);
        place = center + vec2(c * way.x - s * way.y, s * way.x + c * way.y);
    }
)";

/// Whether a picture that lies so is seen as in a mirror, where what turns turns the other way round.
constexpr bool isMirrored(GPUImageRotationMode rotation)
{
    return rotation >= kGPUImageFlipVertical && rotation <= kGPUImageRotateRightFlipHorizontal;
}

} // namespace

GPUImageSwirlFilter::GPUImageSwirlFilter()
    : CenteredFilter(placedColorShader(kUniforms, kPlacing))
    , m_angleUniform(uniformIndex("angle"))
    , m_radiusUniform(uniformIndex("radius"))
{
    setAngle(kAngle);
    setRadius(kRadius);
}

FilterDescription GPUImageSwirlFilter::describe()
{
    using Self = GPUImageSwirlFilter;
    return filterDescription<Self>(
        "GPUImageSwirlFilter", "effect", 1, "A whirl around a point",
        {centerProperty(),
         filterProperty("angle", &Self::setAngle, kAngle, {-2, 2}, "8 radians", "Turn of the centre; 0 for none"),
         filterProperty("radius", &Self::setRadius, kRadius, {0, 1}, "share of width and height",
                        "How far the whirl reaches")});
}

void GPUImageSwirlFilter::setAngle(float angle)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        m_angle = angle;
        tellAngle();
    });
}

void GPUImageSwirlFilter::setRadius(float radius)
{
    m_radius = radius;
    setFloat(radius, m_radiusUniform, m_filterProgram);
}

void GPUImageSwirlFilter::tellAngle()
{
    setFloat(isMirrored(m_inputRotation) ? -m_angle : m_angle, m_angleUniform, m_filterProgram);
}

void GPUImageSwirlFilter::setInputRotation(GPUImageRotationMode rotation, int textureIndex)
{
    CenteredFilter::setInputRotation(rotation, textureIndex);
    tellAngle();
}

} // namespace lamina
