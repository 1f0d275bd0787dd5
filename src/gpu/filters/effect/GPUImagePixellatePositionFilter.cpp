#include "gpu/filters/effect/GPUImagePixellatePositionFilter.h"

#include "gpu/core/FilterRegistry.h"
#include "gpu/filters/color/ColorShaders.h"
#include "gpu/filters/effect/PixelGrid.h"

#include <utility>
#include <vector>

namespace lamina {

namespace {

constexpr float kRadius = 0.25F;
constexpr float kFractionalWidthOfAPixel = 0.05F;

constexpr const char* kPlacing = R"(
    if (distanceFromCenter(place) < radius)
        place = cellMiddle(place);
)";

} // namespace

GPUImagePixellatePositionFilter::GPUImagePixellatePositionFilter()
    : CircleFilter(placedColorShader(circleShader() + kPixelGridShader, kPlacing), kRadius)
    , m_fractionalWidthOfAPixelUniform(uniformIndex("fractionalWidthOfAPixel"))
{
    setFractionalWidthOfAPixel(kFractionalWidthOfAPixel);
}

void GPUImagePixellatePositionFilter::setFractionalWidthOfAPixel(float share)
{
    m_fractionalWidthOfAPixel = share;
    setFloat(share, m_fractionalWidthOfAPixelUniform, m_filterProgram);
}

FilterDescription GPUImagePixellatePositionFilter::describe()
{
    using Self = GPUImagePixellatePositionFilter;
    std::vector<FilterProperty> properties = circleProperties(kRadius);
    properties.push_back(filterProperty("fractionalWidthOfAPixel", &Self::setFractionalWidthOfAPixel,
                                        kFractionalWidthOfAPixel, {0, 0.3}, "share of the width",
                                        "Side of a large pixel"));
    return filterDescription<Self>("GPUImagePixellatePositionFilter", "effect", 1, "Large square pixels in a circle",
                                   std::move(properties));
}

} // namespace lamina
