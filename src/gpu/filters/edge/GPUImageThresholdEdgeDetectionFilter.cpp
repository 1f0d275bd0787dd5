#include "gpu/filters/edge/GPUImageThresholdEdgeDetectionFilter.h"

namespace lamina {

namespace {

constexpr float kStart = 0.25F;

} // namespace

GPUImageThresholdEdgeDetectionFilter::GPUImageThresholdEdgeDetectionFilter()
    : GPUImageThresholdEdgeDetectionFilter("    gl_FragColor = vec4(vec3(edge), color.a);\n")
{
}

GPUImageThresholdEdgeDetectionFilter::GPUImageThresholdEdgeDetectionFilter(const std::string& statements)
    : GPUImageSobelEdgeDetectionFilter(EdgeOperator::Sobel, "uniform highp float threshold;\n",
                                       "    float edge = step(threshold, length(gradient) * edgeStrength);\n" +
                                           statements)
    , m_thresholdUniform(secondUniformIndex("threshold"))
{
    setThreshold(kStart);
}

void GPUImageThresholdEdgeDetectionFilter::setThreshold(float threshold)
{
    m_threshold = threshold;
    setFloat(threshold, m_thresholdUniform, m_secondFilterProgram);
}

std::vector<FilterProperty> GPUImageThresholdEdgeDetectionFilter::properties()
{
    std::vector<FilterProperty> properties = GPUImageSobelEdgeDetectionFilter::properties();
    properties.insert(properties.begin(),
                      filterProperty("threshold", &GPUImageThresholdEdgeDetectionFilter::setThreshold, kStart, {0, 4.5},
                                     "", "From which steepness an edge shows"));
    return properties;
}

FilterDescription GPUImageThresholdEdgeDetectionFilter::describe()
{
    return filterDescription<GPUImageThresholdEdgeDetectionFilter>("GPUImageThresholdEdgeDetectionFilter", "edge", 1,
                                                                   "White edges on black, with nothing in between",
                                                                   properties());
}

} // namespace lamina
