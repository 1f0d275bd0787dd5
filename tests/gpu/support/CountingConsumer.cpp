#include "CountingConsumer.h"

#include "gpu/core/GPUImageFramebuffer.h"
#include "platform/base/CMTime.h"

#include <memory>

namespace lamina::test {

void CountingConsumer::setInputFramebuffer(std::shared_ptr<GPUImageFramebuffer> framebuffer, int)
{
    m_framebuffer.take(std::move(framebuffer));
}

void CountingConsumer::newFrameReadyAtTime(const CMTime& frameTime, int textureIndex)
{
    if (m_log)
        m_log->push_back(m_name + std::to_string(textureIndex));
    Frame frame{frameTime, textureIndex, m_size, 0, std::shared_ptr<GPUImageFramebuffer>(m_framebuffer), {}};
    if (m_framebuffer) {
        frame.counts = m_framebuffer->framebufferReferenceCount();
        if (!m_framebuffer->missingFramebuffer())
            frame.pixels = m_framebuffer->contents();
    }
    m_framebuffer.reset();
    m_frames.push_back(std::move(frame));
}

} // namespace lamina::test
