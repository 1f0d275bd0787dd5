#include "gpu/filters/color/GPUImageRGBFilter.h"
#include "gpu/kernels/ColorKernels.h"

#include "gpu/filters/color/ColorShaders.h"

#include <array>
#include <cstddef>
#include <span>

namespace lamina {

namespace {

constexpr const char* kUniforms = R"(
uniform float redAdjustment;
uniform float greenAdjustment;
uniform float blueAdjustment;
)";

constexpr const char* kStatements = R"(
    gl_FragColor = vec4(color.rgb * vec3(redAdjustment, greenAdjustment, blueAdjustment), color.a);
)";

} // namespace

GPUImageRGBFilter::GPUImageRGBFilter()
    : GPUImageFilter(colorShader(kUniforms, kStatements))
    , m_redUniform(uniformIndex("redAdjustment"))
    , m_greenUniform(uniformIndex("greenAdjustment"))
    , m_blueUniform(uniformIndex("blueAdjustment"))
{
    setRed(1);
    setGreen(1);
    setBlue(1);
}

FilterDescription GPUImageRGBFilter::describe()
{
    using Self = GPUImageRGBFilter;
    return filterDescription<Self>("GPUImageRGBFilter", "colour", 1, "Strengthens or weakens red, green and blue",
                                   {filterProperty("red", &Self::setRed, 1.0F, {0, 2}, "", "Factor of the red"),
                                    filterProperty("green", &Self::setGreen, 1.0F, {0, 2}, "", "Factor of the green"),
                                    filterProperty("blue", &Self::setBlue, 1.0F, {0, 2}, "", "Factor of the blue")});
}

void GPUImageRGBFilter::setRed(float red)
{
    m_red = red;
    setFloat(red, m_redUniform, m_filterProgram);
}

void GPUImageRGBFilter::setGreen(float green)
{
    m_green = green;
    setFloat(green, m_greenUniform, m_filterProgram);
}

void GPUImageRGBFilter::setBlue(float blue)
{
    m_blue = blue;
    setFloat(blue, m_blueUniform, m_filterProgram);
}

FilterKernel GPUImageRGBFilter::kernel() const
{
    kernels::ColorMatrix matrix = kernels::kSameColors;
    const std::array uniforms{m_redUniform, m_greenUniform, m_blueUniform};
    for (std::size_t c = 0; c < uniforms.size(); ++c) {
        const std::span<const float> factor = uniformValues(uniforms[c]);
        if (factor.empty())
            return {};
        matrix[c][c] = factor[0];
    }
    return kernels::matrixKernel(matrix);
}

} // namespace lamina
