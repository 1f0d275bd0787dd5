#include "gpu/core/GPUImageBuffer.h"

#include "gpu/core/VideoProcessingQueue.h"

namespace lamina {

GPUImageBuffer::~GPUImageBuffer()
{
    runSynchronouslyOnVideoProcessingQueue([this] {
        for (const auto& framebuffer : m_bufferedFramebuffers)
            framebuffer->unlock();
    });
}

void GPUImageBuffer::setBufferSize(unsigned frames)
{
    if (frames == 0)
        return;
    runSynchronouslyOnVideoProcessingQueue([&] {
        while (m_bufferedFramebuffers.size() > frames) {
            m_bufferedFramebuffers.front()->unlock();
            m_bufferedFramebuffers.pop_front();
        }
        m_bufferSize = frames;
    });
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
        m_outputFramebuffer = m_bufferedFramebuffers.front();
        m_bufferedFramebuffers.pop_front();
    }
    m_bufferedFramebuffers.push_back(m_firstInputFramebuffer);
    for (const Target& target : targetList()) {
        if (!isIgnored(target))
            target.input->setInputRotation(m_inputRotation, target.textureIndex); // frames are not turned here
    }
    informTargetsAboutNewFrameAtTime(frameTime);
}

} // namespace lamina
