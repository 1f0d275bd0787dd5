#include "gpu/filters/color/GPUImageHighlightShadowFilter.h"

#include "gpu/filters/color/ColorShaders.h"

#include <algorithm>

namespace lamina {

namespace {

constexpr const char* kUniforms = R"(
uniform float shadows;
uniform float highlights;
)";

// The third component is nobody's.
constexpr const char* kStatements = R"(
    float luminance = luminanceOf(color.rgb);
    vec3 ends = vec3(luminance, 1.0 - luminance, 0.0);
    vec3 raised = power(ends, 1.0 / vec3(1.0 + shadows, 2.0 - highlights, 1.0));
    vec3 bent = max(raised + vec3(-0.76, -0.8, 0.0) * raised * raised - ends, 0.0);
    float factor = 1.0 + (bent.x - bent.y) / max(luminance, 0.0001);
    gl_FragColor = vec4(color.rgb * factor, color.a);
)";

} // namespace

GPUImageHighlightShadowFilter::GPUImageHighlightShadowFilter()
    : GPUImageFilter(colorShader(kUniforms, kStatements))
    , m_shadowsUniform(uniformIndex("shadows"))
    , m_highlightsUniform(uniformIndex("highlights"))
{
    setShadows(0);
    setHighlights(1);
}

FilterDescription GPUImageHighlightShadowFilter::describe()
{
    using Self = GPUImageHighlightShadowFilter;
    return filterDescription<Self>(
        "GPUImageHighlightShadowFilter", "colour", 1, "Lightens the shadows and darkens the highlights",
        {filterProperty("shadows", &Self::setShadows, 0.0F, {0, 1}, "", "How far shadows are lightened"),
         filterProperty("highlights", &Self::setHighlights, 1.0F, {0, 1}, "",
                        "1 leaves highlights as they are, below they are darkened")});
}

void GPUImageHighlightShadowFilter::setShadows(float shadows)
{
    m_shadows = shadows;
    setFloat(std::clamp(shadows, 0.0F, 1.0F), m_shadowsUniform, m_filterProgram);
}

void GPUImageHighlightShadowFilter::setHighlights(float highlights)
{
    m_highlights = highlights;
    setFloat(std::clamp(highlights, 0.0F, 1.0F), m_highlightsUniform, m_filterProgram);
}

} // namespace lamina
