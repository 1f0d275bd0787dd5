#include "gpu/filters/effect/GPUImageCrosshatchFilter.h"

#include "gpu/filters/color/ColorShaders.h"

namespace lamina {

namespace {

constexpr float kCrossHatchSpacing = 0.03F;
constexpr float kLineWidth = 0.003F;

constexpr const char* kDeclarations = R"(
uniform float crossHatchSpacing;
uniform float lineWidth;

bool isOnLine(float place)
{
    return mod(place, max(crossHatchSpacing, 0.00001)) <= lineWidth;
}
)";

constexpr const char* kStatements = R"(
    float luminance = luminanceOf(color.rgb);
    float falling = textureCoordinate.x + textureCoordinate.y;
    float rising = textureCoordinate.x - textureCoordinate.y;
    float between = 0.5 * crossHatchSpacing;
    bool isInk = (luminance < 1.0 && isOnLine(falling)) || (luminance < 0.75 && isOnLine(rising)) ||
                 (luminance < 0.5 && isOnLine(falling - between)) || (luminance < 0.3 && isOnLine(rising - between));
    gl_FragColor = vec4(vec3(isInk ? 0.0 : 1.0), color.a);
)";

} // namespace

GPUImageCrosshatchFilter::GPUImageCrosshatchFilter()
    : GPUImageFilter(colorShader(kDeclarations, kStatements))
    , m_crossHatchSpacingUniform(uniformIndex("crossHatchSpacing"))
    , m_lineWidthUniform(uniformIndex("lineWidth"))
{
    setCrossHatchSpacing(kCrossHatchSpacing);
    setLineWidth(kLineWidth);
}

FilterDescription GPUImageCrosshatchFilter::describe()
{
    using Self = GPUImageCrosshatchFilter;
    return filterDescription<Self>("GPUImageCrosshatchFilter", "effect", 1, "A pen drawing of slanting lines",
                                   {filterProperty("crossHatchSpacing", &Self::setCrossHatchSpacing, kCrossHatchSpacing,
                                                   {0.01, 0.06}, "share of the width", "From line to line"),
                                    filterProperty("lineWidth", &Self::setLineWidth, kLineWidth, {0.001, 0.02},
                                                   "share of the width", "Of a line; at least a pixel looks well")});
}

void GPUImageCrosshatchFilter::setCrossHatchSpacing(float share)
{
    m_crossHatchSpacing = share;
    setFloat(share, m_crossHatchSpacingUniform, m_filterProgram);
}

void GPUImageCrosshatchFilter::setLineWidth(float share)
{
    m_lineWidth = share;
    setFloat(share, m_lineWidthUniform, m_filterProgram);
}

} // namespace lamina
