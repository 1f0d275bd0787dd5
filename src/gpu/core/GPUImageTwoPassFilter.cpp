#include "gpu/core/GPUImageTwoPassFilter.h"

#include "gpu/core/GPUImageContext.h"

#include <utility>

namespace lamina {

namespace {

constexpr int kFirstPassUnit = 2;
constexpr int kSecondPassUnit = 3;

} // namespace

GPUImageTwoPassFilter::GPUImageTwoPassFilter(const std::string& firstStageVertexShader,
                                             const std::string& firstStageFragmentShader,
                                             const std::string& secondStageVertexShader,
                                             const std::string& secondStageFragmentShader)
    : GPUImageFilter(firstStageVertexShader, firstStageFragmentShader)
{
    runSynchronouslyOnVideoProcessingQueue(
        [&] { buildSecondFilterProgram(secondStageVertexShader, secondStageFragmentShader); });
}

GPUImageTwoPassFilter::GPUImageTwoPassFilter(const std::string& firstStageFragmentShader,
                                             const std::string& secondStageFragmentShader)
    : GPUImageTwoPassFilter(kGPUImageVertexShaderString, firstStageFragmentShader, kGPUImageVertexShaderString,
                            secondStageFragmentShader)
{
}

void GPUImageTwoPassFilter::buildSecondFilterProgram(const std::string& vertexShader, const std::string& fragmentShader)
{
    m_secondFilterProgram = linkedProgram(vertexShader, fragmentShader, {"position", "inputTextureCoordinate"});
    if (!m_secondFilterProgram)
        return;
    m_secondFilterPositionAttribute = m_secondFilterProgram->attributeIndex("position");
    m_secondFilterTextureCoordinateAttribute = m_secondFilterProgram->attributeIndex("inputTextureCoordinate");
    m_secondFilterInputTextureUniform = m_secondFilterProgram->uniformIndex("inputImageTexture");
    m_secondFilterInputTextureUniform2 = m_secondFilterProgram->uniformIndex("inputImageTexture2");
    GPUImageContext::setActiveShaderProgram(m_secondFilterProgram);
    glEnableVertexAttribArray(m_secondFilterPositionAttribute);
    glEnableVertexAttribArray(m_secondFilterTextureCoordinateAttribute);
}

GLint GPUImageTwoPassFilter::secondUniformIndex(const char* name) const
{
    return valueFromVideoProcessingQueue(
        [&] { return m_secondFilterProgram ? m_secondFilterProgram->uniformIndex(name) : -1; });
}

const std::shared_ptr<UniformState>&
GPUImageTwoPassFilter::uniformStateFor(const std::shared_ptr<GLProgram>& program) const
{
    return program == m_filterProgram ? GPUImageFilter::uniformStateFor(program) : m_secondUniformState;
}

void GPUImageTwoPassFilter::setUniformsForProgramAtIndex(int programIndex)
{
    if (programIndex == 0)
        GPUImageFilter::setUniformsForProgramAtIndex(programIndex);
    else
        m_secondUniformState->restore();
}

void GPUImageTwoPassFilter::renderToTextureWithVertices(const QuadCoordinates& vertices,
                                                        const QuadCoordinates& textureCoordinates)
{
    if (preventRendering() || !canRender()) {
        dropFrame();
        return;
    }
    GPUImageContext::setActiveShaderProgram(m_filterProgram);
    m_outputFramebuffer = beginOutput();
    setUniformsForProgramAtIndex(0);
    bindInput(m_firstInputFramebuffer, kFirstPassUnit, m_filterInputTextureUniform);
    drawQuad(m_filterPositionAttribute, vertices, m_filterTextureCoordinateAttribute, textureCoordinates);
    // The input goes back to the pool before the second framebuffer is fetched, which may then be the very same.
    unlockInputs();
    m_firstInputFramebuffer.reset();

    m_secondOutputFramebuffer =
        GPUImageContext::sharedFramebufferCache().fetchFramebufferForSize(sizeOfFBO(), outputTextureOptions(), false);
    m_secondOutputFramebuffer->activateFramebuffer();
    GPUImageContext::setActiveShaderProgram(m_secondFilterProgram);
    holdForCapture(*m_secondOutputFramebuffer);
    setUniformsForProgramAtIndex(1);
    bindInput(m_outputFramebuffer, kSecondPassUnit, m_secondFilterInputTextureUniform);
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    drawQuad(m_secondFilterPositionAttribute, vertices, m_secondFilterTextureCoordinateAttribute,
             textureCoordinatesForRotation(kGPUImageNoRotation));
    m_outputFramebuffer->unlock();
    m_outputFramebuffer.reset();
    signalCapture();
}

} // namespace lamina
