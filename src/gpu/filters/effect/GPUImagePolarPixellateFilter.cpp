#include "gpu/filters/effect/GPUImagePolarPixellateFilter.h"

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/color/ColorShaders.h"

namespace lamina {

namespace {

constexpr CGSize kPixelSize{0.05, 0.05};

constexpr const char* kUniforms = R"(
uniform vec2 center;
uniform vec2 pixelSize;
)";

// The angle of no length is open.
constexpr const char* kPlacing = R"(
    vec2 way = 2.0 * (place - center);
    vec2 polar = vec2(length(way), way == vec2(0.0) ? 0.0 : atan(way.y, way.x));
    polar -= mod(polar, max(pixelSize, vec2(0.00001)));
    polar.x += 0.03;
    place = center + 0.5 * polar.x * vec2(cos(polar.y), sin(polar.y));
)";

} // namespace

GPUImagePolarPixellateFilter::GPUImagePolarPixellateFilter()
    : CenteredFilter(placedColorShader(kUniforms, kPlacing))
    , m_pixelSizeUniform(uniformIndex("pixelSize"))
{
    setPixelSize(kPixelSize);
}

FilterDescription GPUImagePolarPixellateFilter::describe()
{
    using Self = GPUImagePolarPixellateFilter;
    return filterDescription<Self>(
        "GPUImagePolarPixellateFilter", "effect", 1, "Large pixels in rings around a point",
        {centerProperty(), filterProperty("pixelSize", &Self::setPixelSize, kPixelSize, {0, 0.5}, "",
                                          "Thickness of a ring by the angle of a pixel, in radians")});
}

void GPUImagePolarPixellateFilter::setPixelSize(CGSize size)
{
    m_pixelSize = size;
    setSize(size, m_pixelSizeUniform, m_filterProgram);
}

} // namespace lamina
