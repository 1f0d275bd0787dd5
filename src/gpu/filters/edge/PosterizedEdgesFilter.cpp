// Edges are where the gradient by Sobel's operator is steep (Sobel and Feldman, 1968; Gonzalez and Woods, Digital Image
// Processing, chapter 10); the rest is rounded to evenly spaced levels.

#include "gpu/filters/edge/PosterizedEdgesFilter.h"
#include "gpu/kernels/NeighbourKernels.h"

#include "gpu/filters/edge/GradientShader.h"

#include <span>

namespace lamina {

namespace {

constexpr float kQuantizationLevels = 10;

constexpr const char* kDeclarations = R"(uniform highp float threshold;
uniform highp float quantizationLevels;
)";

constexpr const char* kStatements = R"(
    vec3 posterized = floor(color.rgb * quantizationLevels + 0.5) / quantizationLevels;
    float test = 1.0 - step(threshold, length(gradient));

    gl_FragColor = vec4(posterized * test, color.a);
)";

} // namespace

PosterizedEdgesFilter::PosterizedEdgesFilter(float threshold)
    : GPUImage3x3TextureSamplingFilter(gradientShader(EdgeOperator::Sobel, kDeclarations, kStatements))
    , m_thresholdUniform(uniformIndex("threshold"))
    , m_quantizationLevelsUniform(uniformIndex("quantizationLevels"))
{
    setThreshold(threshold);
    setQuantizationLevels(kQuantizationLevels);
}

void PosterizedEdgesFilter::setThreshold(float threshold)
{
    m_threshold = threshold;
    setFloat(threshold, m_thresholdUniform, m_filterProgram);
}

void PosterizedEdgesFilter::setQuantizationLevels(float levels)
{
    m_quantizationLevels = levels;
    setFloat(levels, m_quantizationLevelsUniform, m_filterProgram);
}

std::vector<FilterProperty> PosterizedEdgesFilter::properties(float threshold)
{
    return texelProperties({
        filterProperty("threshold", &PosterizedEdgesFilter::setThreshold, threshold, {0, 4.5}, "",
                       "From which steepness on an edge goes black"),
        filterProperty("quantizationLevels", &PosterizedEdgesFilter::setQuantizationLevels, kQuantizationLevels,
                       {1, 255}, "steps", "Steps from black to white"),
    });
}

FilterKernel PosterizedEdgesFilter::kernel() const
{
    const std::span<const float> threshold = uniformValues(m_thresholdUniform);
    const std::span<const float> levels = uniformValues(m_quantizationLevelsUniform);
    if (!stepsOverTexels() || threshold.empty() || levels.empty())
        return {};
    return kernels::posterizedEdgesKernel(threshold[0], levels[0]);
}

} // namespace lamina
