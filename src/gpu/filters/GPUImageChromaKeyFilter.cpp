#include "gpu/filters/GPUImageChromaKeyFilter.h"

#include "gpu/filters/ColorShaders.h"

namespace lamina {

namespace {

constexpr float kThreshold = 0.4F;
constexpr float kSmoothing = 0.1F;
constexpr GPUVector3 kGreen{0, 1, 0};

constexpr const char* kDeclarations = R"(
uniform float thresholdSensitivity;
uniform float smoothing;
uniform vec3 colorToReplace;

vec2 differencesOf(vec3 color)
{
    float luma = dot(color, vec3(0.2989, 0.5866, 0.1145));
    return vec2(0.7132, 0.5647) * (color.rb - luma);
}
)";

// smoothstep() says nothing where its edges meet.
constexpr const char* kStatements = R"(
    float away = distance(differencesOf(color.rgb), differencesOf(colorToReplace));
    float share = clamp((away - thresholdSensitivity) / max(smoothing, 0.0001), 0.0, 1.0);
    gl_FragColor = vec4(color.rgb, color.a * share * share * (3.0 - 2.0 * share));
)";

} // namespace

GPUImageChromaKeyFilter::GPUImageChromaKeyFilter()
    : GPUImageFilter(colorShader(kDeclarations, kStatements))
    , m_thresholdSensitivityUniform(uniformIndex("thresholdSensitivity"))
    , m_smoothingUniform(uniformIndex("smoothing"))
    , m_colorToReplaceUniform(uniformIndex("colorToReplace"))
{
    setThresholdSensitivity(kThreshold);
    setSmoothing(kSmoothing);
    setColorToReplace(kGreen);
}

FilterDescription GPUImageChromaKeyFilter::describe()
{
    using Self = GPUImageChromaKeyFilter;
    return filterDescription<Self>(
        "GPUImageChromaKeyFilter", "colour", 1, "Makes one colour transparent, as of a green screen",
        {filterProperty("thresholdSensitivity", &Self::setThresholdSensitivity, kThreshold, {0, 1}, "",
                        "How different from the colour a pixel may be to go too"),
         filterProperty("smoothing", &Self::setSmoothing, kSmoothing, {0, 1}, "", "Width of the soft edge beyond that"),
         filterProperty("colorToReplace", &Self::setColorToReplace, kGreen, {0, 1}, "", "The colour that goes")},
        {filterOperation("setColorToReplaceRed:green:blue:", &Self::setColorToReplaceRed, "The colour that goes",
                         kGreen.one, kGreen.two, kGreen.three)});
}

void GPUImageChromaKeyFilter::setThresholdSensitivity(float threshold)
{
    m_thresholdSensitivity = threshold;
    setFloat(threshold, m_thresholdSensitivityUniform, m_filterProgram);
}

void GPUImageChromaKeyFilter::setSmoothing(float smoothing)
{
    m_smoothing = smoothing;
    setFloat(smoothing, m_smoothingUniform, m_filterProgram);
}

void GPUImageChromaKeyFilter::setColorToReplace(const GPUVector3& color)
{
    m_colorToReplace = color;
    setVec3(color, m_colorToReplaceUniform, m_filterProgram);
}

} // namespace lamina
