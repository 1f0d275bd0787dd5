#include "gpu/filters/effect/GPUImageGlassSphereFilter.h"

#include "platform/base/CGGeometry.h"

namespace lamina {

namespace {

constexpr CGPoint kLamp{-1, -1};

constexpr const char* kUniforms = R"(
uniform vec2 lamp;
)";

constexpr const char* kStatements = R"(
    float atRightAngles = (1.0 - refractiveIndex) / (1.0 + refractiveIndex);
    float mirrored = mix(pow(abs(1.0 - normal.z), 5.0), 1.0, atRightAngles * atRightAngles);
    vec3 halfway = normalize(normalize(vec3(lamp, 1.0)) + vec3(0.0, 0.0, 1.0));
    float gleam = pow(max(dot(normal, halfway), 0.00001), 100.0);
    color.rgb = mix(color.rgb, vec3(1.0), mirrored) + 0.8 * gleam;
)";

} // namespace

GPUImageGlassSphereFilter::GPUImageGlassSphereFilter()
    : GPUImageSphereRefractionFilter("-2.0", kUniforms, kStatements)
    , m_lampUniform(uniformIndex("lamp"))
{
    tellLamp();
}

/// A direction turns with the picture as the way between two of its points does.
void GPUImageGlassSphereFilter::tellLamp()
{
    const CGPoint origin = rotatedPoint({}, m_inputRotation);
    const CGPoint tip = rotatedPoint(kLamp, m_inputRotation);
    setPoint({tip.x - origin.x, tip.y - origin.y}, m_lampUniform, m_filterProgram);
}

void GPUImageGlassSphereFilter::setInputRotation(GPUImageRotationMode rotation, int textureIndex)
{
    GPUImageSphereRefractionFilter::setInputRotation(rotation, textureIndex);
    tellLamp();
}

FilterDescription GPUImageGlassSphereFilter::describe()
{
    return filterDescription<GPUImageGlassSphereFilter>("GPUImageGlassSphereFilter", "effect", 1,
                                                        "The picture in a shining ball of glass", sphereProperties());
}

} // namespace lamina
