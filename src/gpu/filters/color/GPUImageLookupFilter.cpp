// A colour cube cut into tiles and interpolated trilinearly: in red and green by the texture unit, in blue by the
// shader (Selan, Using Lookup Tables to Accelerate Color Transformations, GPU Gems 2, chapter 24).

#include "gpu/filters/color/GPUImageLookupFilter.h"
#include "gpu/kernels/LookupKernel.h"

#include <span>

namespace lamina {

namespace {

// Places run from the middle of a tile's first texel to that of its last, so that no neighbour tile is mixed in.
constexpr const char* kLookupFragmentShader = R"(
precision highp float;

uniform float intensity;
varying vec2 textureCoordinate;
varying vec2 textureCoordinate2;
uniform highp sampler2D inputImageTexture;
uniform highp sampler2D inputImageTexture2;

vec2 placeInTile(float tile, vec2 redGreen)
{
    float row = floor(tile / 8.0);
    float column = tile - row * 8.0;
    return vec2(column, row) * 0.125 + 0.5 / 512.0 + (0.125 - 1.0 / 512.0) * redGreen;
}

void main()
{
    vec4 color = texture2D(inputImageTexture, textureCoordinate);
    float blue = color.b * 63.0;
    vec4 lower = texture2D(inputImageTexture2, placeInTile(floor(blue), color.rg));
    vec4 upper = texture2D(inputImageTexture2, placeInTile(ceil(blue), color.rg));
    vec4 look = mix(lower, upper, fract(blue));
    gl_FragColor = mix(color, vec4(look.rgb, color.a), intensity);
}
)";

} // namespace

GPUImageLookupFilter::GPUImageLookupFilter()
    : GPUImageTwoInputFilter(kLookupFragmentShader)
{
    // The program is shared, and may have been left with what another filter set.
    setFloat(0.0F, "intensity");
}

FilterDescription GPUImageLookupFilter::describe()
{
    return filterDescription<GPUImageLookupFilter>(
        "GPUImageLookupFilter", "editor", 2, "Grades the first picture by the look-up table in the second",
        {filterProperty("intensity", &GPUImageLookupFilter::setIntensity, 1.0F, {0, 1}, "",
                        "Share of the graded picture; has to be set to take effect")},
        {}, {"picture", "table"});
}

void GPUImageLookupFilter::setIntensity(float intensity)
{
    m_intensity = intensity;
    setFloat(intensity, kIntensityUniform, m_filterProgram);
}

FilterKernel GPUImageLookupFilter::kernel() const
{
    const std::span<const float> intensity = uniformValues("intensity");
    return intensity.empty() ? FilterKernel() : kernels::lookupKernel(intensity[0]);
}

} // namespace lamina
