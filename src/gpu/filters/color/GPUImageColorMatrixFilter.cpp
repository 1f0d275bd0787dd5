#include "gpu/filters/color/GPUImageColorMatrixFilter.h"
#include "gpu/kernels/ColorKernels.h"

#include <cstddef>
#include <span>

namespace lamina {

namespace {

// The colour stands left of the matrix: each column of the uniform, a record of ours, gives one channel.
constexpr const char* kColorMatrixFragmentShader = R"(
precision highp float;

varying vec2 textureCoordinate;
uniform highp sampler2D inputImageTexture;
uniform mat4 colorMatrix;
uniform float intensity;

void main()
{
    vec4 color = texture2D(inputImageTexture, textureCoordinate);
    gl_FragColor = intensity * (color * colorMatrix) + (1.0 - intensity) * color;
}
)";

} // namespace

GPUImageColorMatrixFilter::GPUImageColorMatrixFilter()
    : GPUImageFilter(kColorMatrixFragmentShader)
    , m_intensityUniform(uniformIndex("intensity"))
    , m_colorMatrixUniform(uniformIndex("colorMatrix"))
{
    setIntensity(1);
    setColorMatrix(GPUMatrix4x4::identity());
}

FilterDescription GPUImageColorMatrixFilter::describe()
{
    using Self = GPUImageColorMatrixFilter;
    return filterDescription<Self>(
        "GPUImageColorMatrixFilter", "editor", 1, "Mixes red, green, blue and alpha by a matrix",
        {filterProperty("intensity", &Self::setIntensity, 1.0F, {0, 1}, "", "Share of the mixed colour"),
         filterProperty("colorMatrix", &Self::setColorMatrix, GPUMatrix4x4::identity(), {-2, 2}, "",
                        "A row of weights for each of red, green, blue and alpha")});
}

void GPUImageColorMatrixFilter::setIntensity(float intensity)
{
    m_intensity = intensity;
    setFloat(intensity, m_intensityUniform, m_filterProgram);
}

void GPUImageColorMatrixFilter::setColorMatrix(const GPUMatrix4x4& matrix)
{
    m_colorMatrix = matrix;
    setMatrix4f(matrix, m_colorMatrixUniform, m_filterProgram);
}

FilterKernel GPUImageColorMatrixFilter::kernel() const
{
    const std::span<const float> intensity = uniformValues(m_intensityUniform);
    const std::span<const float> mixture = uniformValues(m_colorMatrixUniform);
    if (intensity.empty() || mixture.empty())
        return {};
    kernels::ColorMatrix matrix = kernels::kSameColors;
    for (std::size_t to = 0; to < 4; ++to) {
        for (std::size_t from = 0; from < 4; ++from)
            matrix[to][from] = intensity[0] * mixture[4 * to + from] + (to == from ? 1 - intensity[0] : 0.0F);
    }
    return kernels::matrixKernel(matrix);
}

} // namespace lamina
