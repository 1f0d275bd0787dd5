#include "gpu/core/GPUImageFourInputFilter.h"

#include <utility>

namespace lamina {

const char* const kGPUImageFourInputTextureVertexShaderString = R"(
attribute vec4 position;
attribute vec4 inputTextureCoordinate;
attribute vec4 inputTextureCoordinate2;
attribute vec4 inputTextureCoordinate3;
attribute vec4 inputTextureCoordinate4;

varying vec2 textureCoordinate;
varying vec2 textureCoordinate2;
varying vec2 textureCoordinate3;
varying vec2 textureCoordinate4;

void main()
{
    gl_Position = position;
    textureCoordinate = inputTextureCoordinate.xy;
    textureCoordinate2 = inputTextureCoordinate2.xy;
    textureCoordinate3 = inputTextureCoordinate3.xy;
    textureCoordinate4 = inputTextureCoordinate4.xy;
}
)";

namespace {

constexpr int kSlot = 3;
constexpr int kTextureUnit = 5;

} // namespace

GPUImageFourInputFilter::GPUImageFourInputFilter(const std::string& fragmentShader)
    : GPUImageFourInputFilter(kGPUImageFourInputTextureVertexShaderString, fragmentShader)
{
}

GPUImageFourInputFilter::GPUImageFourInputFilter(const std::string& vertexShader, const std::string& fragmentShader)
    : GPUImageThreeInputFilter(vertexShader, fragmentShader, {"inputTextureCoordinate4"})
{
    if (m_filterProgram)
        m_filterFourthTextureCoordinateAttribute = m_filterProgram->attributeIndex("inputTextureCoordinate4");
    m_filterInputTextureUniform4 = uniformIndex("inputImageTexture4");
}

void GPUImageFourInputFilter::bindFurtherInputs()
{
    GPUImageThreeInputFilter::bindFurtherInputs();
    bindSlot(m_fourthInputFramebuffer, kTextureUnit, m_filterInputTextureUniform4,
             m_filterFourthTextureCoordinateAttribute, m_inputRotation4);
}

void GPUImageFourInputFilter::disableFurtherArrays()
{
    GPUImageThreeInputFilter::disableFurtherArrays();
    glDisableVertexAttribArray(m_filterFourthTextureCoordinateAttribute);
}

void GPUImageFourInputFilter::unlockInputs()
{
    GPUImageThreeInputFilter::unlockInputs();
    if (m_fourthInputFramebuffer)
        m_fourthInputFramebuffer->unlock();
}

void GPUImageFourInputFilter::newFrameReadyAtTime(const CMTime& frameTime, int textureIndex)
{
    // Only the first three are asked: a fourth that comes after them is passed over.
    if (m_hasReceivedFirstFrame && m_hasReceivedSecondFrame && m_hasReceivedThirdFrame)
        return;
    m_hasReceivedFirstFrame |= textureIndex == 0 || m_firstFrameCheckDisabled;
    m_hasReceivedSecondFrame |= textureIndex == 1 || m_secondFrameCheckDisabled;
    m_hasReceivedThirdFrame |= textureIndex == 2 || m_thirdFrameCheckDisabled;
    m_hasReceivedFourthFrame |= textureIndex == kSlot || m_fourthFrameCheckDisabled;
    CMTime* const times[] = {&m_firstFrameTime, &m_secondFrameTime, &m_thirdFrameTime, &m_fourthFrameTime};
    *times[textureIndex < kSlot ? textureIndex : kSlot] = frameTime;
    const bool movingOppositeStill = !frameTime.isIndefinite() && m_firstFrameTime.isIndefinite();

    const bool complete =
        m_hasReceivedFirstFrame && m_hasReceivedSecondFrame && m_hasReceivedThirdFrame && m_hasReceivedFourthFrame;
    if (!complete && !movingOppositeStill)
        return;
    renderToTextureWithVertices(kGPUImageQuadVertices, textureCoordinatesForRotation(m_inputRotation));
    informTargetsAboutNewFrameAtTime(frameTime);
    m_hasReceivedFirstFrame = false;
    m_hasReceivedSecondFrame = false;
    m_hasReceivedThirdFrame = false;
    m_hasReceivedFourthFrame = false;
}

void GPUImageFourInputFilter::setInputFramebuffer(std::shared_ptr<GPUImageFramebuffer> framebuffer, int textureIndex)
{
    if (textureIndex < kSlot) {
        m_hasSetThirdTexture |= textureIndex == 2;
        GPUImageThreeInputFilter::setInputFramebuffer(std::move(framebuffer), textureIndex);
        return;
    }
    m_fourthInputFramebuffer = std::move(framebuffer);
    if (m_fourthInputFramebuffer)
        m_fourthInputFramebuffer->lock();
}

int GPUImageFourInputFilter::nextAvailableTextureIndex() const
{
    return m_hasSetThirdTexture ? kSlot : GPUImageThreeInputFilter::nextAvailableTextureIndex();
}

void GPUImageFourInputFilter::setInputSize(CGSize size, int textureIndex)
{
    GPUImageThreeInputFilter::setInputSize(size, textureIndex);
    if (textureIndex == 2 && size == CGSize{})
        m_hasSetThirdTexture = false;
}

void GPUImageFourInputFilter::setInputRotation(GPUImageRotationMode rotation, int textureIndex)
{
    if (textureIndex < kSlot)
        GPUImageThreeInputFilter::setInputRotation(rotation, textureIndex);
    else
        m_inputRotation4 = rotation;
}

CGSize GPUImageFourInputFilter::rotatedSize(CGSize size, int textureIndex) const
{
    return textureIndex < kSlot ? GPUImageThreeInputFilter::rotatedSize(size, textureIndex)
                                : sizeRotatedBy(m_inputRotation4, size);
}

} // namespace lamina
