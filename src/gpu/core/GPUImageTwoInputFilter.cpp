#include "gpu/core/GPUImageTwoInputFilter.h"

#include "gpu/core/GPUImageContext.h"

#include <utility>

namespace lamina {

const char* const kGPUImageTwoInputTextureVertexShaderString = R"(
attribute vec4 position;
attribute vec4 inputTextureCoordinate;
attribute vec4 inputTextureCoordinate2;

varying vec2 textureCoordinate;
varying vec2 textureCoordinate2;

void main()
{
    gl_Position = position;
    textureCoordinate = inputTextureCoordinate.xy;
    textureCoordinate2 = inputTextureCoordinate2.xy;
}
)";

namespace {

constexpr int kFirstTextureUnit = 2;
constexpr int kSecondTextureUnit = 3;

std::vector<std::string> withSecond(std::vector<std::string> more)
{
    more.insert(more.begin(), "inputTextureCoordinate2");
    return more;
}

} // namespace

GPUImageTwoInputFilter::GPUImageTwoInputFilter(const std::string& fragmentShader)
    : GPUImageTwoInputFilter(kGPUImageTwoInputTextureVertexShaderString, fragmentShader)
{
}

GPUImageTwoInputFilter::GPUImageTwoInputFilter(const std::string& vertexShader, const std::string& fragmentShader)
    : GPUImageTwoInputFilter(vertexShader, fragmentShader, std::vector<std::string>())
{
}

GPUImageTwoInputFilter::GPUImageTwoInputFilter(const std::string& vertexShader, const std::string& fragmentShader,
                                               std::vector<std::string> moreAttributes)
    : GPUImageFilter(vertexShader, fragmentShader, withSecond(std::move(moreAttributes)))
{
    if (m_filterProgram)
        m_filterSecondTextureCoordinateAttribute = m_filterProgram->attributeIndex("inputTextureCoordinate2");
    m_filterInputTextureUniform2 = uniformIndex("inputImageTexture2");
}

void GPUImageTwoInputFilter::bindSlot(const std::shared_ptr<GPUImageFramebuffer>& input, int unit, GLint uniform,
                                      GLuint attribute, GPUImageRotationMode rotation)
{
    bindInput(input, unit, uniform);
    glEnableVertexAttribArray(attribute);
    glVertexAttribPointer(attribute, 2, GL_FLOAT, GL_FALSE, 0, textureCoordinatesForRotation(rotation).data());
}

void GPUImageTwoInputFilter::bindFurtherInputs()
{
    bindSlot(m_secondInputFramebuffer, kSecondTextureUnit, m_filterInputTextureUniform2,
             m_filterSecondTextureCoordinateAttribute, m_inputRotation2);
}

/// An array that stays enabled would be read by draws of programs that don't have it.
void GPUImageTwoInputFilter::disableFurtherArrays()
{
    glDisableVertexAttribArray(m_filterSecondTextureCoordinateAttribute);
}

void GPUImageTwoInputFilter::unlockInputs()
{
    GPUImageFilter::unlockInputs();
    if (m_secondInputFramebuffer)
        m_secondInputFramebuffer->unlock();
}

void GPUImageTwoInputFilter::renderToTextureWithVertices(const QuadCoordinates& vertices,
                                                         const QuadCoordinates& textureCoordinates)
{
    if (preventRendering() || !canRender()) {
        dropFrame();
        return;
    }
    GPUImageContext::setActiveShaderProgram(m_filterProgram);
    m_outputFramebuffer = beginOutput();
    if (m_usingNextFrameForImageCapture)
        m_outputFramebuffer->lock();
    setUniformsForProgramAtIndex(0);
    bindInput(m_firstInputFramebuffer, kFirstTextureUnit, m_filterInputTextureUniform);
    bindFurtherInputs();
    drawQuad(m_filterPositionAttribute, vertices, m_filterTextureCoordinateAttribute, textureCoordinates);
    disableFurtherArrays();
    unlockInputs();
    signalCapture();
}

void GPUImageTwoInputFilter::newFrameReadyAtTime(const CMTime& frameTime, int textureIndex)
{
    // A frame of a source that outruns the other, or that comes round in a loop.
    if (m_hasReceivedFirstFrame && m_hasReceivedSecondFrame)
        return;
    const bool isFirst = textureIndex == 0;
    (isFirst ? m_hasReceivedFirstFrame : m_hasReceivedSecondFrame) = true;
    (isFirst ? m_firstFrameTime : m_secondFrameTime) = frameTime;
    if (isFirst ? m_secondFrameCheckDisabled : m_firstFrameCheckDisabled)
        (isFirst ? m_hasReceivedSecondFrame : m_hasReceivedFirstFrame) = true;
    const CMTime& opposite = isFirst ? m_secondFrameTime : m_firstFrameTime;
    const bool movingOppositeStill = !frameTime.isIndefinite() && opposite.isIndefinite();

    if (!(m_hasReceivedFirstFrame && m_hasReceivedSecondFrame) && !movingOppositeStill)
        return;
    const CMTime passedOn = m_firstFrameTime.isIndefinite() ? m_secondFrameTime : m_firstFrameTime;
    GPUImageFilter::newFrameReadyAtTime(passedOn, 0);
    m_hasReceivedFirstFrame = false;
    m_hasReceivedSecondFrame = false;
}

void GPUImageTwoInputFilter::setInputFramebuffer(std::shared_ptr<GPUImageFramebuffer> framebuffer, int textureIndex)
{
    if (textureIndex == 0) {
        GPUImageFilter::setInputFramebuffer(std::move(framebuffer), 0);
        m_hasSetFirstTexture = true;
        return;
    }
    m_secondInputFramebuffer = std::move(framebuffer);
    if (m_secondInputFramebuffer)
        m_secondInputFramebuffer->lock();
}

void GPUImageTwoInputFilter::setInputSize(CGSize size, int textureIndex)
{
    if (textureIndex != 0)
        return;
    GPUImageFilter::setInputSize(size, textureIndex);
    if (size == CGSize{})
        m_hasSetFirstTexture = false;
}

void GPUImageTwoInputFilter::setInputRotation(GPUImageRotationMode rotation, int textureIndex)
{
    (textureIndex == 0 ? m_inputRotation : m_inputRotation2) = rotation;
}

CGSize GPUImageTwoInputFilter::rotatedSize(CGSize size, int textureIndex) const
{
    return sizeRotatedBy(textureIndex == 0 ? m_inputRotation : m_inputRotation2, size);
}

} // namespace lamina
