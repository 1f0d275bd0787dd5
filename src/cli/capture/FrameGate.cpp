#include "cli/capture/FrameGate.h"

#include "gpu/core/GPUImageRotationMode.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "platform/base/DispatchQueue.h"

#include <utility>

namespace lamina {

std::optional<CGSize> FrameGate::frameSize() const
{
    const std::lock_guard lock(m_mutex);
    return m_frameSize;
}

void FrameGate::setHandler(std::function<void(const CMTime&)> handler)
{
    runSynchronouslyOnVideoProcessingQueue([&] { m_handler = std::move(handler); });
}

void FrameGate::setInputSize(CGSize size, int /*textureIndex*/)
{
    m_size = size;
}

void FrameGate::setInputRotation(GPUImageRotationMode rotation, int /*textureIndex*/)
{
    m_rotation = rotation;
}

void FrameGate::newFrameReadyAtTime(const CMTime& frameTime, int /*textureIndex*/)
{
    if (m_handler)
        m_handler(frameTime);
    const std::lock_guard lock(m_mutex);
    if (m_frameSize)
        return;
    m_frameSize = sizeRotatedBy(m_rotation, m_size);
    DispatchQueue::main().async([] {}); // wakes who waits
}

} // namespace lamina
