#include "gpu/core/FramebufferHold.h"

#include "gpu/core/VideoProcessingQueue.h"

#include <utility>

namespace lamina {

FramebufferHold::~FramebufferHold()
{
    if (m_isCounted)
        runAsynchronouslyOnVideoProcessingQueue([framebuffer = std::move(m_framebuffer)] { framebuffer->unlock(); });
}

FramebufferHold::FramebufferHold(FramebufferHold&& other) noexcept
    : m_framebuffer(std::move(other.m_framebuffer))
    , m_isCounted(std::exchange(other.m_isCounted, false))
{
}

FramebufferHold& FramebufferHold::operator=(FramebufferHold&& other) noexcept
{
    std::swap(m_framebuffer, other.m_framebuffer);
    std::swap(m_isCounted, other.m_isCounted);
    other.reset();
    return *this;
}

FramebufferHold& FramebufferHold::operator=(std::shared_ptr<GPUImageFramebuffer> withItsCount)
{
    reset();
    m_framebuffer = std::move(withItsCount);
    m_isCounted = m_framebuffer && !m_framebuffer->referenceCountingDisabled();
    return *this;
}

void FramebufferHold::take(std::shared_ptr<GPUImageFramebuffer> framebuffer)
{
    if (framebuffer)
        framebuffer->lock(); // before the former is given back, which may be the same
    *this = std::move(framebuffer);
}

void FramebufferHold::giveBack()
{
    if (m_isCounted)
        reset();
}

void FramebufferHold::reset()
{
    const std::shared_ptr<GPUImageFramebuffer> former = std::move(m_framebuffer);
    m_framebuffer.reset();
    if (std::exchange(m_isCounted, false))
        former->unlock();
}

std::shared_ptr<GPUImageFramebuffer> FramebufferHold::release()
{
    m_isCounted = false;
    return std::move(m_framebuffer);
}

} // namespace lamina
