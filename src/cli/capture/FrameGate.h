#pragma once

#include "gpu/core/GPUImageFramebuffer.h"
#include "gpu/core/GPUImageRotationMode.h"
#include "gpu/core/GPUImageTarget.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"

#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace lamina {

/// Stands among a source's targets, before the others, and takes no frame itself: it tells that frames come and in
/// which size, and later hears of each before those behind it do. Its functions are for any thread.
class FrameGate : public GPUImageTarget {
public:
    /// The upright sides of the frames; nothing until the first one comes, which wakes the main queue.
    std::optional<CGSize> frameSize() const;
    /// From now on calls this with the time of each frame, on the video processing queue. Empty: no more; afterwards
    /// none is under way.
    void setHandler(std::function<void(const CMTime&)> handler);

    void newFrameReadyAtTime(const CMTime& frameTime, int textureIndex) override;
    void setInputFramebuffer(std::shared_ptr<GPUImageFramebuffer>, int) override {}
    void setInputSize(CGSize size, int textureIndex) override;
    void setInputRotation(GPUImageRotationMode rotation, int textureIndex) override;

private:
    mutable std::mutex m_mutex; ///< for the size
    std::optional<CGSize> m_frameSize;
    // On the video processing queue.
    CGSize m_size;
    GPUImageRotationMode m_rotation = kGPUImageNoRotation;
    std::function<void(const CMTime&)> m_handler;
};

} // namespace lamina
