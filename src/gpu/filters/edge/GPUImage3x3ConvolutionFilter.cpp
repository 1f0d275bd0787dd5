// Spatial filtering with a 3 x 3 mask that is not turned around: strictly a correlation (Gonzalez and Woods, Digital
// Image Processing, chapter 3).

#include "gpu/filters/edge/GPUImage3x3ConvolutionFilter.h"
#include "gpu/kernels/NeighbourKernels.h"

#include <algorithm>
#include <span>
#include <vector>

namespace lamina {

namespace {

constexpr GPUMatrix3x3 kCentreAlone{{0, 0, 0}, {0, 1, 0}, {0, 0, 0}};

// A row of the kernel goes to a column of the matrix, and the first index is the column's: [r][c] reads as in the
// kernel. Sums are made at high precision: with weights of some size, the rounding of medium precision shows in 8 bits.
constexpr const char* kDeclarations = "uniform mediump mat3 convolutionMatrix;\n";

constexpr const char* kStatements = R"(
    vec3 result = topLeft * convolutionMatrix[0][0] + top * convolutionMatrix[0][1]
                  + topRight * convolutionMatrix[0][2];
    result += left * convolutionMatrix[1][0] + color.rgb * convolutionMatrix[1][1] + right * convolutionMatrix[1][2];
    result += bottomLeft * convolutionMatrix[2][0] + bottom * convolutionMatrix[2][1]
            + bottomRight * convolutionMatrix[2][2];

    gl_FragColor = vec4(result, color.a);
)";

} // namespace

GPUImage3x3ConvolutionFilter::GPUImage3x3ConvolutionFilter()
    : GPUImage3x3TextureSamplingFilter(neighbourhoodShader(NeighbourValue::Rgb, kDeclarations, kStatements))
    , m_convolutionMatrixUniform(uniformIndex("convolutionMatrix"))
{
    setConvolutionKernel(kCentreAlone);
}

void GPUImage3x3ConvolutionFilter::setConvolutionKernel(const GPUMatrix3x3& kernel)
{
    m_convolutionKernel = kernel;
    setMatrix3f(kernel, m_convolutionMatrixUniform, m_filterProgram);
}

std::vector<FilterProperty> GPUImage3x3ConvolutionFilter::kernelProperties(const GPUMatrix3x3& kernel)
{
    return texelProperties(
        {filterProperty("convolutionKernel", &GPUImage3x3ConvolutionFilter::setConvolutionKernel, kernel, {-8, 8}, "",
                        "Weights of the rows above, at and below the pixel, each from left to right")});
}

FilterDescription GPUImage3x3ConvolutionFilter::describe()
{
    return filterDescription<GPUImage3x3ConvolutionFilter>("GPUImage3x3ConvolutionFilter", "editor", 1,
                                                           "Weighs a pixel and its neighbours by a matrix",
                                                           kernelProperties(kCentreAlone));
}

FilterKernel GPUImage3x3ConvolutionFilter::kernel() const
{
    const std::span<const float> weights = uniformValues(m_convolutionMatrixUniform);
    kernels::NeighbourWeights taken{};
    if (!stepsOverTexels() || weights.size() != taken.size())
        return {};
    std::ranges::copy(weights, taken.begin());
    return kernels::convolutionKernel(taken);
}

} // namespace lamina
