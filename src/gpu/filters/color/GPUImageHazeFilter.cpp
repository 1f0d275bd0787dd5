// Koschmieder's law (1924): what is seen through haze is J t + A (1 - t) of the scene J and the air's light A. Here A
// is white and d = 1 - t; solved for J.

#include "gpu/filters/color/GPUImageHazeFilter.h"
#include "gpu/kernels/ColorKernels.h"

#include <cstddef>
#include <span>

namespace lamina {

namespace {

// A divisor of 0 is replaced by a tiny one: white, 0 / 0 else, becomes 0 like all the rest instead of what a driver
// makes of "not a number".
constexpr const char* kHazeFragmentShader = R"(
varying highp vec2 textureCoordinate;
uniform highp sampler2D inputImageTexture;
uniform lowp float hazeDistance;
uniform highp float slope;

void main()
{
    highp vec4 color = texture2D(inputImageTexture, textureCoordinate);
    highp float d = textureCoordinate.y * slope + hazeDistance;
    highp float divisor = d == 1.0 ? 0.0001 : 1.0 - d;
    gl_FragColor = (color - d * vec4(1.0)) / divisor;
}
)";

} // namespace

GPUImageHazeFilter::GPUImageHazeFilter()
    : GPUImageFilter(kHazeFragmentShader)
    , m_distanceUniform(uniformIndex("hazeDistance"))
    , m_slopeUniform(uniformIndex("slope"))
{
    setDistance(0.2F);
    setSlope(0);
}

FilterDescription GPUImageHazeFilter::describe()
{
    using Self = GPUImageHazeFilter;
    return filterDescription<Self>(
        "GPUImageHazeFilter", "editor", 1, "Takes white haze away, or adds it",
        {filterProperty("distance", &Self::setDistance, 0.2F, {-0.3, 0.3}, "",
                        "Strength at the top; below 0 adds haze"),
         filterProperty("slope", &Self::setSlope, 0.0F, {-0.3, 0.3}, "", "Gain of the strength from top to bottom")});
}

void GPUImageHazeFilter::setDistance(float distance)
{
    m_distance = distance;
    setFloat(distance, m_distanceUniform, m_filterProgram);
}

void GPUImageHazeFilter::setSlope(float slope)
{
    m_slope = slope;
    setFloat(slope, m_slopeUniform, m_filterProgram);
}

FilterKernel GPUImageHazeFilter::kernel() const
{
    const std::span<const float> distance = uniformValues(m_distanceUniform);
    const std::span<const float> slope = uniformValues(m_slopeUniform);
    if (distance.empty() || slope.empty())
        return {};
    return kernels::matrixKernel([atTop = distance[0], slope = slope[0]](float place) {
        const float haze = place * slope + atTop;
        const float factor = 1 / (haze == 1 ? 0.0001F : 1 - haze);
        kernels::ColorMatrix matrix{};
        for (std::size_t c = 0; c < 4; ++c) {
            matrix[c][c] = factor;
            matrix[c][4] = -haze * factor;
        }
        return matrix;
    });
}

} // namespace lamina
