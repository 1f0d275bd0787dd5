#include "gpu/filters/edge/GPUImageSobelEdgeDetectionFilter.h"

#include "gpu/core/FilterProgram.h"
#include "gpu/core/GPUImage3x3TextureSamplingFilter.h"
#include "gpu/filters/color/ColorShaders.h"

namespace lamina {

namespace {

constexpr float kStart = 1;

constexpr const char* kGrey = "    gl_FragColor = vec4(vec3(luminanceOf(color.rgb)), color.a);";

constexpr const char* kSteepness = "    gl_FragColor = vec4(vec3(length(gradient) * edgeStrength), color.a);\n";

} // namespace

GPUImageSobelEdgeDetectionFilter::GPUImageSobelEdgeDetectionFilter()
    : GPUImageSobelEdgeDetectionFilter(EdgeOperator::Sobel)
{
}

GPUImageSobelEdgeDetectionFilter::GPUImageSobelEdgeDetectionFilter(EdgeOperator edgeOperator)
    : GPUImageSobelEdgeDetectionFilter(edgeOperator, "", kSteepness)
{
}

GPUImageSobelEdgeDetectionFilter::GPUImageSobelEdgeDetectionFilter(EdgeOperator edgeOperator,
                                                                   const std::string& declarations,
                                                                   const std::string& statements)
    : TexelSampling<GPUImageTwoPassFilter>(
          kGPUImageVertexShaderString, colorShader("", kGrey), kGPUImageNearbyTexelSamplingVertexShaderString,
          gradientShader(edgeOperator, "uniform highp float edgeStrength;\n" + declarations, statements))
    , m_edgeStrengthUniform(secondUniformIndex("edgeStrength"))
{
    setEdgeStrength(kStart);
}

void GPUImageSobelEdgeDetectionFilter::setEdgeStrength(float strength)
{
    m_edgeStrength = strength;
    setFloat(strength, m_edgeStrengthUniform, m_secondFilterProgram);
}

std::vector<FilterProperty> GPUImageSobelEdgeDetectionFilter::properties()
{
    return texelProperties({filterProperty("edgeStrength", &GPUImageSobelEdgeDetectionFilter::setEdgeStrength, kStart,
                                           {0, 4}, "", "How much edges stand out")});
}

FilterDescription GPUImageSobelEdgeDetectionFilter::describe()
{
    return filterDescription<GPUImageSobelEdgeDetectionFilter>("GPUImageSobelEdgeDetectionFilter", "edge", 1,
                                                               "Bright edges on black", properties());
}

} // namespace lamina
