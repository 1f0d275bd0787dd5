#include "gpu/core/GPUImageBuffer.h"

#include "gpu/core/VideoProcessingQueue.h"

#include <utility>

namespace lamina {

void GPUImageBuffer::setBufferSize(unsigned frames)
{
    if (frames == 0)
        return;
    runSynchronouslyOnVideoProcessingQueue([&] {
        while (m_bufferedFramebuffers.size() > frames)
            m_bufferedFramebuffers.pop_front();
        m_bufferSize = frames;
    });
}

void GPUImageBuffer::setInputSize(CGSize size, int textureIndex)
{
    GPUImageFilter::setInputSize(size, textureIndex);
    if (size == CGSize{})
        m_bufferedFramebuffers.clear();
}

void GPUImageBuffer::newFrameReadyAtTime(const CMTime& frameTime, int)
{
    if (!m_firstInputFramebuffer)
        return;
    if (preventRendering()) {
        dropFrame();
        return;
    }
    if (m_bufferedFramebuffers.size() < m_bufferSize) {
        m_outputFramebuffer = m_firstInputFramebuffer;
        m_firstInputFramebuffer->lock(); // handed on now and once more when its turn comes
    } else {
        m_outputFramebuffer = m_bufferedFramebuffers.front().release();
        m_bufferedFramebuffers.pop_front();
    }
    m_bufferedFramebuffers.push_back(std::move(m_firstInputFramebuffer));
    for (const Target& target : targetList()) {
        if (!isIgnored(target))
            target.input->setInputRotation(m_inputRotation, target.textureIndex); // frames are not turned here
    }
    informTargetsAboutNewFrameAtTime(frameTime);
}

} // namespace lamina
