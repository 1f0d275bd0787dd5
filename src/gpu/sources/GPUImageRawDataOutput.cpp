#include "gpu/sources/GPUImageRawDataOutput.h"

#include "gpu/core/FilterProgram.h"
#include "gpu/core/GLErrors.h"
#include "gpu/core/GPUImageContext.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/GPUImageFramebuffer.h"
#include "gpu/core/GPUImageRotationMode.h"
#include "gpu/core/VideoProcessingQueue.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace lamina {

namespace {

constexpr int kTextureUnit = 4;

/// `value` within the indices of `count` things; what is no number is the first.
double withinIndices(double value, int count)
{
    return value > 0 ? std::min(value, count - 1.0) : 0;
}

} // namespace

GPUImageRawDataOutput::GPUImageRawDataOutput(CGSize imageSize, bool resultsInBGRAFormat)
    : m_outputBGRA(resultsInBGRAFormat)
    , m_imageSize(imageSize)
{
    runSynchronouslyOnVideoProcessingQueue([this] {
        m_dataProgram = linkedProgram(kGPUImageVertexShaderString,
                                      m_outputBGRA ? kGPUImageColorSwizzlingFragmentShaderString
                                                   : kGPUImagePassthroughFragmentShaderString,
                                      {"position", "inputTextureCoordinate"});
        if (!m_dataProgram)
            return;
        m_dataPositionAttribute = m_dataProgram->attributeIndex("position");
        m_dataTextureCoordinateAttribute = m_dataProgram->attributeIndex("inputTextureCoordinate");
        m_dataInputTextureUniform = m_dataProgram->uniformIndex("inputImageTexture");
    });
}

std::span<const std::uint8_t> GPUImageRawDataOutput::rawBytesForImage()
{
    return valueFromVideoProcessingQueue([this] {
        readFrame();
        return std::span<const std::uint8_t>(m_rawBytesForImage.data(), m_rawBytesForImage.size());
    });
}

void GPUImageRawDataOutput::readFrame()
{
    if (!m_rawBytesForImage) {
        const IntSize size = GPUImageFramebuffer::wholePixels(m_imageSize);
        m_rawBytesForImage = PixelBuffer::zeroed(std::size_t{4} * static_cast<unsigned>(size.width) *
                                                 static_cast<unsigned>(size.height));
        m_hasReadFromTheCurrentFrame = false;
    }
    if (m_hasReadFromTheCurrentFrame || m_rawBytesForImage.size() == 0 || !GPUImageContext::useImageProcessingContext())
        return;
    const FramebufferHold output = renderAtInternalSize();
    const IntSize size = output->pixelSize();
    glReadPixels(0, 0, size.width, size.height, GL_RGBA, GL_UNSIGNED_BYTE, m_rawBytesForImage.data());
    checkDraw("reading raw data");
    m_hasReadFromTheCurrentFrame = true;
}

FramebufferHold GPUImageRawDataOutput::renderAtInternalSize()
{
    FramebufferHold output;
    output = GPUImageContext::sharedFramebufferCache().fetchFramebufferForSize(m_imageSize, false);
    output->activateFramebuffer();
    if (std::exchange(m_lockNextFramebuffer, false))
        m_retainedFramebuffer.take(output);
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    if (m_dataProgram && m_firstInputFramebuffer)
        drawInput();
    m_firstInputFramebuffer.giveBack();
    return output;
}

void GPUImageRawDataOutput::drawInput() const
{
    GPUImageContext::setActiveShaderProgram(m_dataProgram);
    glActiveTexture(GL_TEXTURE0 + kTextureUnit);
    m_firstInputFramebuffer->bindForReading(TextureReads::Anywhere);
    glUniform1i(m_dataInputTextureUniform, kTextureUnit);
    glVertexAttribPointer(m_dataPositionAttribute, 2, GL_FLOAT, GL_FALSE, 0, kGPUImageQuadVertices.data());
    glVertexAttribPointer(m_dataTextureCoordinateAttribute, 2, GL_FLOAT, GL_FALSE, 0,
                          GPUImageFilter::textureCoordinatesForRotation(m_inputRotation).data());
    glEnableVertexAttribArray(m_dataPositionAttribute);
    glEnableVertexAttribArray(m_dataTextureCoordinateAttribute);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    checkDraw("drawing raw data");
}

std::size_t GPUImageRawDataOutput::bytesPerRowInOutput() const
{
    return valueFromVideoProcessingQueue(
        [this] { return m_retainedFramebuffer ? m_retainedFramebuffer->bytesPerRow() : 0; });
}

GPUByteColorVector GPUImageRawDataOutput::colorAtLocation(CGPoint location)
{
    return valueFromVideoProcessingQueue([&]() -> GPUByteColorVector {
        readFrame();
        if (m_rawBytesForImage.size() == 0)
            return {};
        const IntSize size = GPUImageFramebuffer::wholePixels(m_imageSize);
        const double x = withinIndices(location.x, size.width);
        const double y = withinIndices(size.height - location.y, size.height);
        const auto pixel = static_cast<std::size_t>(std::llround(y * size.width + x));
        const std::uint8_t* bytes = m_rawBytesForImage.data() + 4 * pixel;
        return {bytes[m_outputBGRA ? 2 : 0], bytes[1], bytes[m_outputBGRA ? 0 : 2], bytes[3]};
    });
}

CGSize GPUImageRawDataOutput::imageSize() const
{
    return valueFromVideoProcessingQueue([this] { return m_imageSize; });
}

void GPUImageRawDataOutput::setImageSize(CGSize imageSize)
{
    runSynchronouslyOnVideoProcessingQueue([&] {
        m_imageSize = imageSize;
        m_rawBytesForImage = {};
    });
}

void GPUImageRawDataOutput::lockFramebufferForReading()
{
    runSynchronouslyOnVideoProcessingQueue([this] { m_lockNextFramebuffer = true; });
}

void GPUImageRawDataOutput::unlockFramebufferAfterReading()
{
    runSynchronouslyOnVideoProcessingQueue([this] { m_retainedFramebuffer.reset(); });
}

void GPUImageRawDataOutput::setNewFrameAvailableBlock(NewFrameAvailableBlock block)
{
    // The former one goes on the caller's thread, after the hop.
    runSynchronouslyOnVideoProcessingQueue([&] { m_newFrameAvailableBlock.swap(block); });
}

void GPUImageRawDataOutput::newFrameReadyAtTime(const CMTime&, int)
{
    m_hasReadFromTheCurrentFrame = false;
    if (const NewFrameAvailableBlock available = m_newFrameAvailableBlock)
        available();
}

void GPUImageRawDataOutput::setInputFramebuffer(std::shared_ptr<GPUImageFramebuffer> framebuffer, int)
{
    m_firstInputFramebuffer.take(std::move(framebuffer));
}

/// What a source that is removed has counted stays readable; an uncounted texture may end with it.
void GPUImageRawDataOutput::setInputSize(CGSize size, int)
{
    if (size == CGSize{} && !m_firstInputFramebuffer.isCounted())
        m_firstInputFramebuffer.reset();
}

void GPUImageRawDataOutput::setInputRotation(GPUImageRotationMode rotation, int)
{
    m_inputRotation = rotation;
}

} // namespace lamina
