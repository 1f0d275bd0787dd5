#include "gpu/filters/color/GPUImageHighlightShadowTintFilter.h"

#include "gpu/filters/color/ColorShaders.h"

namespace lamina {

namespace {

constexpr GPUVector4 kShadowTint{0, 0.2F, 0.4F, 1};
constexpr GPUVector4 kHighlightTint{1, 0.85F, 0.6F, 1};

constexpr const char* kUniforms = R"(
uniform float shadowTintIntensity;
uniform float highlightTintIntensity;
uniform vec3 shadowTintColor;
uniform vec3 highlightTintColor;
)";

constexpr const char* kStatements = R"(
    float luminance = luminanceOf(color.rgb);
    vec3 dark = shadowTintIntensity * shadowTintColor;
    vec3 toBright = highlightTintIntensity * (highlightTintColor - 1.0);
    gl_FragColor = vec4(color.rgb + dark * (1.0 - luminance) + toBright * luminance, color.a);
)";

} // namespace

GPUImageHighlightShadowTintFilter::GPUImageHighlightShadowTintFilter()
    : GPUImageFilter(colorShader(kUniforms, kStatements))
    , m_shadowTintIntensityUniform(uniformIndex("shadowTintIntensity"))
    , m_highlightTintIntensityUniform(uniformIndex("highlightTintIntensity"))
    , m_shadowTintColorUniform(uniformIndex("shadowTintColor"))
    , m_highlightTintColorUniform(uniformIndex("highlightTintColor"))
{
    setShadowTintIntensity(0);
    setHighlightTintIntensity(0);
    setShadowTintColor(kShadowTint);
    setHighlightTintColor(kHighlightTint);
}

FilterDescription GPUImageHighlightShadowTintFilter::describe()
{
    using Self = GPUImageHighlightShadowTintFilter;
    return filterDescription<Self>(
        "GPUImageHighlightShadowTintFilter", "colour", 1, "Gives shadows one tint and highlights another",
        {filterProperty("shadowTintIntensity", &Self::setShadowTintIntensity, 0.0F, {0, 1}, "",
                        "Share of the tint in the shadows"),
         filterProperty("highlightTintIntensity", &Self::setHighlightTintIntensity, 0.0F, {0, 1}, "",
                        "Share of the tint in the highlights"),
         filterProperty("shadowTintColor", &Self::setShadowTintColor, kShadowTint, {0, 1}, "",
                        "Tint of the shadows; the fourth number has no effect"),
         filterProperty("highlightTintColor", &Self::setHighlightTintColor, kHighlightTint, {0, 1}, "",
                        "Tint of the highlights; the fourth number has no effect")});
}

void GPUImageHighlightShadowTintFilter::setShadowTintIntensity(float intensity)
{
    m_shadowTintIntensity = intensity;
    setFloat(intensity, m_shadowTintIntensityUniform, m_filterProgram);
}

void GPUImageHighlightShadowTintFilter::setHighlightTintIntensity(float intensity)
{
    m_highlightTintIntensity = intensity;
    setFloat(intensity, m_highlightTintIntensityUniform, m_filterProgram);
}

void GPUImageHighlightShadowTintFilter::setShadowTintColor(const GPUVector4& color)
{
    m_shadowTintColor = color;
    setVec3({color.one, color.two, color.three}, m_shadowTintColorUniform, m_filterProgram);
}

void GPUImageHighlightShadowTintFilter::setHighlightTintColor(const GPUVector4& color)
{
    m_highlightTintColor = color;
    setVec3({color.one, color.two, color.three}, m_highlightTintColorUniform, m_filterProgram);
}

} // namespace lamina
