#include "gpu/filters/blur/PixelStepFilter.h"

#include "gpu/core/GPUImageRotationMode.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "platform/base/CGGeometry.h"

namespace lamina {

PixelStepFilter::PixelStepFilter(const std::string& vertexShader, const std::string& fragmentShader,
                                 const char* widthName, const char* heightName)
    : GPUImageFilter(vertexShader, fragmentShader)
    , m_widthName(widthName)
    , m_heightName(heightName)
{
    readUniforms();
}

void PixelStepFilter::readUniforms()
{
    m_widthUniform = uniformIndex(m_widthName);
    m_heightUniform = uniformIndex(m_heightName);
}

void PixelStepFilter::switchToShaders(const std::string& vertexShader, const std::string& fragmentShader)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        buildProgram(firstPass(), vertexShader, fragmentShader);
        readUniforms();
    });
}

void PixelStepFilter::setUniformsForProgramAtIndex(int programIndex)
{
    GPUImageFilter::setUniformsForProgramAtIndex(programIndex);
    const CGSize texture = sizeRotatedBy(m_inputRotation, sizeOfFBO());
    glUniform1f(m_widthUniform, static_cast<float>(1 / texture.width));
    glUniform1f(m_heightUniform, static_cast<float>(1 / texture.height));
}

} // namespace lamina
