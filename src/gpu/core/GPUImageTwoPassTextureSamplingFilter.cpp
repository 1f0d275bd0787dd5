#include "gpu/core/GPUImageTwoPassTextureSamplingFilter.h"

#include "gpu/core/GPUImageRotationMode.h"
#include "gpu/core/VideoProcessingQueue.h"

#include <cmath>

namespace lamina {

GPUImageTwoPassTextureSamplingFilter::GPUImageTwoPassTextureSamplingFilter(const std::string& firstStageVertexShader,
                                                                           const std::string& firstStageFragmentShader,
                                                                           const std::string& secondStageVertexShader,
                                                                           const std::string& secondStageFragmentShader)
    : GPUImageTwoPassFilter(firstStageVertexShader, firstStageFragmentShader, secondStageVertexShader,
                            secondStageFragmentShader)
{
    runSynchronouslyOnVideoProcessingQueue([this] { readOffsetUniforms(); });
}

void GPUImageTwoPassTextureSamplingFilter::readOffsetUniforms()
{
    m_verticalPass.widthUniform = uniformIndex("texelWidthOffset");
    m_verticalPass.heightUniform = uniformIndex("texelHeightOffset");
    m_horizontalPass.widthUniform = secondUniformIndex("texelWidthOffset");
    m_horizontalPass.heightUniform = secondUniformIndex("texelHeightOffset");
}

bool GPUImageTwoPassTextureSamplingFilter::stepsAreWholeTexels() const
{
    return m_verticalTexelSpacing == std::trunc(m_verticalTexelSpacing) &&
           m_horizontalTexelSpacing == std::trunc(m_horizontalTexelSpacing);
}

void GPUImageTwoPassTextureSamplingFilter::setVerticalTexelSpacing(double texels)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        m_verticalTexelSpacing = texels;
        setupFilterForSize(sizeOfFBO());
    });
}

void GPUImageTwoPassTextureSamplingFilter::setHorizontalTexelSpacing(double texels)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        m_horizontalTexelSpacing = texels;
        setupFilterForSize(sizeOfFBO());
    });
}

void GPUImageTwoPassTextureSamplingFilter::setupFilterForSize(CGSize filterFrameSize)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        const auto vertical = static_cast<float>(m_verticalTexelSpacing / filterFrameSize.height);
        const bool turned = swapsWidthAndHeight(m_inputRotation);
        m_verticalPass.width = turned ? vertical : 0;
        m_verticalPass.height = turned ? 0 : vertical;
        m_horizontalPass.width = static_cast<float>(m_horizontalTexelSpacing / filterFrameSize.width);
        m_horizontalPass.height = 0;
    });
}

void GPUImageTwoPassTextureSamplingFilter::setUniformsForProgramAtIndex(int programIndex)
{
    GPUImageTwoPassFilter::setUniformsForProgramAtIndex(programIndex);
    const Offsets& pass = programIndex == 0 ? m_verticalPass : m_horizontalPass;
    glUniform1f(pass.widthUniform, pass.width);
    glUniform1f(pass.heightUniform, pass.height);
}

} // namespace lamina
