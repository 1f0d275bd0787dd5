#include "gpu/filters/edge/GPUImageThresholdedNonMaximumSuppressionFilter.h"

#include "gpu/filters/edge/SuppressionShader.h"

namespace lamina {

namespace {

constexpr float kStart = 0.9F;

SuppressedValue suppressedValue(bool packedColorspace)
{
    return packedColorspace ? SuppressedValue::Packed : SuppressedValue::Red;
}

} // namespace

GPUImageThresholdedNonMaximumSuppressionFilter::GPUImageThresholdedNonMaximumSuppressionFilter(bool packedColorspace)
    : GPUImage3x3TextureSamplingFilter(suppressionShader(
          suppressedValue(packedColorspace), "uniform highp float threshold;\n", "step(threshold * 255.0, centre)"))
    , m_thresholdUniform(uniformIndex("threshold"))
{
    setThreshold(kStart);
}

void GPUImageThresholdedNonMaximumSuppressionFilter::setThreshold(float threshold)
{
    m_threshold = threshold;
    setFloat(threshold, m_thresholdUniform, m_filterProgram);
}

FilterDescription GPUImageThresholdedNonMaximumSuppressionFilter::describe()
{
    using Self = GPUImageThresholdedNonMaximumSuppressionFilter;
    return filterDescriptionWithArguments<Self, bool>(
        "GPUImageThresholdedNonMaximumSuppressionFilter", "detection", 1,
        "Keeps the peaks above a threshold, by red or by a count over three bytes",
        {argumentProperty("packedColorspace", false, {}, "", "Whether green and blue go on where red ends")},
        texelProperties(
            {filterProperty("threshold", &Self::setThreshold, kStart, {0, 1}, "", "The least value that stays")}));
}

} // namespace lamina
