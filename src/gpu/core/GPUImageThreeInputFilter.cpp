#include "gpu/core/GPUImageThreeInputFilter.h"

#include <utility>

namespace lamina {

const char* const kGPUImageThreeInputTextureVertexShaderString = R"(
attribute vec4 position;
attribute vec4 inputTextureCoordinate;
attribute vec4 inputTextureCoordinate2;
attribute vec4 inputTextureCoordinate3;

varying vec2 textureCoordinate;
varying vec2 textureCoordinate2;
varying vec2 textureCoordinate3;

void main()
{
    gl_Position = position;
    textureCoordinate = inputTextureCoordinate.xy;
    textureCoordinate2 = inputTextureCoordinate2.xy;
    textureCoordinate3 = inputTextureCoordinate3.xy;
}
)";

namespace {

constexpr int kSlot = 2;
constexpr int kTextureUnit = 4;

std::vector<std::string> withThird(std::vector<std::string> more)
{
    more.insert(more.begin(), "inputTextureCoordinate3");
    return more;
}

} // namespace

GPUImageThreeInputFilter::GPUImageThreeInputFilter(const std::string& fragmentShader)
    : GPUImageThreeInputFilter(kGPUImageThreeInputTextureVertexShaderString, fragmentShader)
{
}

GPUImageThreeInputFilter::GPUImageThreeInputFilter(const std::string& vertexShader, const std::string& fragmentShader)
    : GPUImageThreeInputFilter(vertexShader, fragmentShader, std::vector<std::string>())
{
}

GPUImageThreeInputFilter::GPUImageThreeInputFilter(const std::string& vertexShader, const std::string& fragmentShader,
                                                   std::vector<std::string> moreAttributes)
    : GPUImageTwoInputFilter(vertexShader, fragmentShader, withThird(std::move(moreAttributes)))
{
    if (m_filterProgram)
        m_filterThirdTextureCoordinateAttribute = m_filterProgram->attributeIndex("inputTextureCoordinate3");
    m_filterInputTextureUniform3 = uniformIndex("inputImageTexture3");
}

void GPUImageThreeInputFilter::bindFurtherInputs()
{
    GPUImageTwoInputFilter::bindFurtherInputs();
    bindSlot(m_thirdInputFramebuffer, kTextureUnit, m_filterInputTextureUniform3,
             m_filterThirdTextureCoordinateAttribute, m_inputRotation3);
}

void GPUImageThreeInputFilter::disableFurtherArrays()
{
    GPUImageTwoInputFilter::disableFurtherArrays();
    glDisableVertexAttribArray(m_filterThirdTextureCoordinateAttribute);
}

void GPUImageThreeInputFilter::unlockInputs()
{
    GPUImageTwoInputFilter::unlockInputs();
    if (m_thirdInputFramebuffer)
        m_thirdInputFramebuffer->unlock();
}

void GPUImageThreeInputFilter::newFrameReadyAtTime(const CMTime& frameTime, int textureIndex)
{
    if (m_hasReceivedFirstFrame && m_hasReceivedSecondFrame && m_hasReceivedThirdFrame)
        return;
    // A slot whose check is disabled counts as received from the first arrival at another one.
    m_hasReceivedFirstFrame |= textureIndex == 0 || m_firstFrameCheckDisabled;
    m_hasReceivedSecondFrame |= textureIndex == 1 || m_secondFrameCheckDisabled;
    m_hasReceivedThirdFrame |= textureIndex == kSlot || m_thirdFrameCheckDisabled;
    (textureIndex == 0 ? m_firstFrameTime : textureIndex == 1 ? m_secondFrameTime : m_thirdFrameTime) = frameTime;
    const bool movingOppositeStill = !frameTime.isIndefinite() && m_firstFrameTime.isIndefinite();

    const bool complete = m_hasReceivedFirstFrame && m_hasReceivedSecondFrame && m_hasReceivedThirdFrame;
    if (!complete && !movingOppositeStill)
        return;
    GPUImageFilter::newFrameReadyAtTime(frameTime, 0);
    m_hasReceivedFirstFrame = false;
    m_hasReceivedSecondFrame = false;
    m_hasReceivedThirdFrame = false;
}

void GPUImageThreeInputFilter::setInputFramebuffer(std::shared_ptr<GPUImageFramebuffer> framebuffer, int textureIndex)
{
    if (textureIndex < kSlot) {
        m_hasSetSecondTexture |= textureIndex == 1;
        GPUImageTwoInputFilter::setInputFramebuffer(std::move(framebuffer), textureIndex);
        return;
    }
    m_thirdInputFramebuffer = std::move(framebuffer);
    if (m_thirdInputFramebuffer)
        m_thirdInputFramebuffer->lock();
}

int GPUImageThreeInputFilter::nextAvailableTextureIndex() const
{
    return m_hasSetSecondTexture ? kSlot : GPUImageTwoInputFilter::nextAvailableTextureIndex();
}

void GPUImageThreeInputFilter::setInputSize(CGSize size, int textureIndex)
{
    GPUImageTwoInputFilter::setInputSize(size, textureIndex);
    if (textureIndex == 1 && size == CGSize{})
        m_hasSetSecondTexture = false;
}

void GPUImageThreeInputFilter::setInputRotation(GPUImageRotationMode rotation, int textureIndex)
{
    if (textureIndex < kSlot)
        GPUImageTwoInputFilter::setInputRotation(rotation, textureIndex);
    else
        m_inputRotation3 = rotation;
}

CGSize GPUImageThreeInputFilter::rotatedSize(CGSize size, int textureIndex) const
{
    return textureIndex < kSlot ? GPUImageTwoInputFilter::rotatedSize(size, textureIndex)
                                : sizeRotatedBy(m_inputRotation3, size);
}

} // namespace lamina
