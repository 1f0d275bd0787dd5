#include "gpu/filters/effect/GPUImagePixellateFilter.h"

#include "gpu/filters/color/ColorShaders.h"
#include "gpu/filters/effect/PixelGrid.h"

namespace lamina {

namespace {

constexpr float kFractionalWidthOfAPixel = 0.05F;

constexpr const char* kPlacing = R"(
    place = cellMiddle(place);
    vec2 way = (place - textureCoordinate) * aspect;
)";

} // namespace

GPUImagePixellateFilter::GPUImagePixellateFilter()
    : GPUImagePixellateFilter("", "    gl_FragColor = color;", kFractionalWidthOfAPixel)
{
}

GPUImagePixellateFilter::GPUImagePixellateFilter(const std::string& declarations, const std::string& statements,
                                                 float fractionalWidthOfAPixel)
    : AspectRatioFilter(placedColorShader(kAspectRatioShader + (kPixelGridShader + declarations), kPlacing, statements))
    , m_fractionalWidthOfAPixelUniform(uniformIndex("fractionalWidthOfAPixel"))
{
    setFractionalWidthOfAPixel(fractionalWidthOfAPixel);
}

void GPUImagePixellateFilter::setFractionalWidthOfAPixel(float share)
{
    m_fractionalWidthOfAPixel = share;
    setFloat(share, m_fractionalWidthOfAPixelUniform, m_filterProgram);
}

std::vector<FilterProperty> GPUImagePixellateFilter::pixellateProperties(float fractionalWidthOfAPixel)
{
    return {filterProperty("fractionalWidthOfAPixel", &GPUImagePixellateFilter::setFractionalWidthOfAPixel,
                           fractionalWidthOfAPixel, {0, 0.3}, "share of the width", "Side of a large pixel"),
            aspectRatioProperty()};
}

FilterDescription GPUImagePixellateFilter::describe()
{
    return filterDescription<GPUImagePixellateFilter>("GPUImagePixellateFilter", "effect", 1, "Large square pixels",
                                                      pixellateProperties(kFractionalWidthOfAPixel));
}

} // namespace lamina
