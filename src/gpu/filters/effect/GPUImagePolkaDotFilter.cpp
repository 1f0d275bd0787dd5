#include "gpu/filters/effect/GPUImagePolkaDotFilter.h"

#include "gpu/core/FilterRegistry.h"

#include <utility>
#include <vector>

namespace lamina {

namespace {

constexpr float kFractionalWidthOfAPixel = 0.05F;
constexpr float kDotScaling = 0.9F;

constexpr const char* kUniforms = R"(
uniform float dotScaling;
)";

constexpr const char* kStatements = R"(
    bool isInDot = length(way) < fractionalWidthOfAPixel * 0.5 * dotScaling;
    gl_FragColor = vec4(isInDot ? color.rgb : vec3(0.0), color.a);
)";

} // namespace

GPUImagePolkaDotFilter::GPUImagePolkaDotFilter()
    : GPUImagePixellateFilter(kUniforms, kStatements, kFractionalWidthOfAPixel)
    , m_dotScalingUniform(uniformIndex("dotScaling"))
{
    setDotScaling(kDotScaling);
}

FilterDescription GPUImagePolkaDotFilter::describe()
{
    using Self = GPUImagePolkaDotFilter;
    std::vector<FilterProperty> properties = pixellateProperties(kFractionalWidthOfAPixel);
    properties.push_back(filterProperty("dotScaling", &Self::setDotScaling, kDotScaling, {0, 1.5},
                                        "share of a large pixel", "A dot's diameter"));
    return filterDescription<Self>("GPUImagePolkaDotFilter", "effect", 1, "Coloured dots on black",
                                   std::move(properties));
}

void GPUImagePolkaDotFilter::setDotScaling(float share)
{
    m_dotScaling = share;
    setFloat(share, m_dotScalingUniform, m_filterProgram);
}

} // namespace lamina
