#include "gpu/filters/effect/GPUImagePosterizeFilter.h"

#include "gpu/filters/color/ColorShaders.h"

namespace lamina {

namespace {

constexpr int kColorLevels = 10;

constexpr const char* kUniforms = R"(
uniform float colorLevels;
)";

// Of no levels there is the lowest shade, as of fewer and fewer.
constexpr const char* kStatements = R"(
    vec3 posterized = colorLevels > 0.0 ? floor(color.rgb * colorLevels + 0.5) / colorLevels : vec3(0.0);
    gl_FragColor = vec4(posterized, color.a);
)";

} // namespace

GPUImagePosterizeFilter::GPUImagePosterizeFilter()
    : GPUImageFilter(colorShader(kUniforms, kStatements))
    , m_colorLevelsUniform(uniformIndex("colorLevels"))
{
    setColorLevels(kColorLevels);
}

FilterDescription GPUImagePosterizeFilter::describe()
{
    using Self = GPUImagePosterizeFilter;
    return filterDescription<Self>("GPUImagePosterizeFilter", "effect", 1, "Few shades, as on a poster",
                                   {filterProperty("colorLevels", &Self::setColorLevels, kColorLevels, {1, 256},
                                                   "steps", "Steps from black to white")});
}

void GPUImagePosterizeFilter::setColorLevels(int levels)
{
    m_colorLevels = levels;
    setFloat(static_cast<float>(levels), m_colorLevelsUniform, m_filterProgram);
}

} // namespace lamina
