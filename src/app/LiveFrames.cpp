#include "app/LiveFrames.h"

#include "gpu/core/GPUImageFramebuffer.h"
#include "gpu/core/GPUImageInput.h"
#include "gpu/core/VideoProcessingQueue.h"

#include <utility>

namespace lamina {

void LiveFrames::setFrameHandler(FrameHandler handler)
{
    const std::scoped_lock lock(m_mutex);
    m_handler = std::move(handler);
}

void LiveFrames::setInputFramebuffer(std::shared_ptr<GPUImageFramebuffer> framebuffer, int)
{
    m_coming.framebuffer.take(std::move(framebuffer));
}

void LiveFrames::setInputSize(CGSize size, int)
{
    m_coming.size = size;
}

void LiveFrames::setInputRotation(GPUImageRotationMode rotation, int)
{
    m_coming.rotation = rotation;
}

void LiveFrames::newFrameReadyAtTime(const CMTime& frameTime, int)
{
    if (!m_coming.framebuffer)
        return;
    const bool first = m_expectsFirst.exchange(false);
    if (m_shut && !first)
        return m_coming.framebuffer.reset();
    m_last.framebuffer = std::move(m_coming.framebuffer);
    m_last.size = m_coming.size;
    m_last.rotation = m_coming.rotation;
    const CGSize upright = sizeRotatedBy(m_last.rotation, m_last.size);
    FrameHandler handler;
    {
        const std::scoped_lock lock(m_mutex);
        m_time = frameTime;
        if (first || upright != m_uprightSize)
            handler = m_handler;
        m_uprightSize = upright;
    }
    push();
    if (handler)
        handler(upright);
}

PushedFrame LiveFrames::lastFrame() const
{
    const std::scoped_lock lock(m_mutex);
    return {.framebuffer = m_last.framebuffer,
            .size = m_last.size,
            .time = m_time + m_offset,
            .rotation = m_last.rotation,
            .leavesOutDisabled = true};
}

void LiveFrames::push()
{
    if (m_last.framebuffer)
        pushToTargets(lastFrame());
}

void LiveFrames::pushTo(GPUImageInput& target) const
{
    if (!m_last.framebuffer)
        return;
    const PushedFrame frame = lastFrame();
    handFrame(frame, false, target, 0);
    target.newFrameReadyAtTime(frame.time, 0);
}

void LiveFrames::pushAgain()
{
    runAsynchronouslyOnVideoProcessingQueue(
        [self = std::static_pointer_cast<LiveFrames>(shared_from_this())] { self->push(); });
}

void LiveFrames::forget()
{
    runAsynchronouslyOnVideoProcessingQueue([self = std::static_pointer_cast<LiveFrames>(shared_from_this())] {
        self->m_last.framebuffer.reset();
        const std::scoped_lock lock(self->m_mutex);
        self->m_uprightSize = {};
    });
}

CGSize LiveFrames::size() const
{
    const std::scoped_lock lock(m_mutex);
    return m_uprightSize;
}

CMTime LiveFrames::time() const
{
    const std::scoped_lock lock(m_mutex);
    return m_time;
}

void LiveFrames::setTimeOffset(const CMTime& offset)
{
    const std::scoped_lock lock(m_mutex);
    m_offset = offset;
}

} // namespace lamina
