#include "gpu/filters/color/GPUImageWhiteBalanceFilter.h"

#include "gpu/filters/color/ColorShaders.h"

#include <algorithm>

namespace lamina {

namespace {

constexpr float kStart = 5000;
constexpr float kLowest = 1000;
constexpr float kGelInMired = 112;
constexpr float kGelDensity = 0.25F;

constexpr const char* kDeclarations = R"(
uniform float temperature;
uniform float tint;

const vec3 warmFilter = vec3(0.9255, 0.5412, 0.0);
)";

// Only Q changes, so that a way to Y, I and Q and back would round for nothing.
constexpr const char* kStatements = R"(
    float q = dot(color.rgb, vec3(0.211456, -0.522591, 0.31135));
    float moved = clamp(q + tint * 0.5226 * 0.1, -0.5226, 0.5226);
    vec3 tinted = clamp(color.rgb + (moved - q) * vec3(0.6210, -0.6474, 1.7046), 0.0, 1.0);
    vec3 warm = mix(2.0 * tinted * warmFilter, 1.0 - 2.0 * (1.0 - tinted) * (1.0 - warmFilter), step(0.5, tinted));
    gl_FragColor = vec4(mix(tinted, warm, temperature), color.a);
)";

} // namespace

GPUImageWhiteBalanceFilter::GPUImageWhiteBalanceFilter()
    : GPUImageFilter(colorShader(kDeclarations, kStatements))
    , m_temperatureUniform(uniformIndex("temperature"))
    , m_tintUniform(uniformIndex("tint"))
{
    setTemperature(kStart);
    setTint(0);
}

FilterDescription GPUImageWhiteBalanceFilter::describe()
{
    using Self = GPUImageWhiteBalanceFilter;
    return filterDescription<Self>(
        "GPUImageWhiteBalanceFilter", "colour", 1, "Makes a picture warmer or cooler, greener or more magenta",
        {filterProperty("temperature", &Self::setTemperature, kStart, {2500, 12000}, "kelvins",
                        "Below 5000 cooler, above 5000 warmer"),
         filterProperty("tint", &Self::setTint, 0.0F, {-2, 2}, "", "Below 0 greener, above 0 more magenta")});
}

void GPUImageWhiteBalanceFilter::setTemperature(float kelvins)
{
    m_temperature = kelvins;
    const auto mired = [](float temperature) { return 1e6F / std::max(temperature, kLowest); };
    setFloat(kGelDensity * (mired(kStart) - mired(kelvins)) / kGelInMired, m_temperatureUniform, m_filterProgram);
}

void GPUImageWhiteBalanceFilter::setTint(float tint)
{
    m_tint = tint;
    setFloat(tint, m_tintUniform, m_filterProgram);
}

} // namespace lamina
