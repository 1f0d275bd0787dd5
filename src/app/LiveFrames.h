#pragma once

#include "gpu/core/FramebufferHold.h"
#include "gpu/core/GPUImageOutput.h"
#include "gpu/core/GPUImageRotationMode.h"
#include "gpu/core/GPUImageTarget.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>

namespace lamina {

/// What stands between a source and the filters of the live screen: it passes each frame on and keeps the last one,
/// which so can be pushed again when the source stands still. Targets that are not enabled get none.
///
/// Held by std::shared_ptr. From any thread but for what `GPUImageInput` brings.
class LiveFrames : public GPUImageOutput, public GPUImageTarget {
public:
    /// Hears, on the video processing queue, of the first frame after `expectFirst` and of every one of another size.
    /// `size`: upright, in pixels.
    using FrameHandler = std::function<void(CGSize size)>;
    void setFrameHandler(FrameHandler handler);

    /// The next frame counts as a first one. It is taken even while frames are shut out.
    void expectFirst() { m_expectsFirst = true; }
    /// It hasn't come.
    bool isExpecting() const { return m_expectsFirst; }
    /// Frames that come are dropped; the last one stays.
    void setShut(bool shut) { m_shut = shut; }
    /// Pushes the last frame again; nothing where there is none. Doesn't wait.
    void pushAgain();
    /// The last frame to this one alone, which need not be a target. On the video processing queue.
    void pushTo(GPUImageInput& target) const;
    /// Lets go of the last frame.
    void forget();

    /// Of the last frame, upright, in pixels; zero where there is none.
    CGSize size() const;
    /// Of the last frame, as its source told it.
    CMTime time() const;
    /// By how much the times that targets are told are later than the source's.
    void setTimeOffset(const CMTime& offset);

    void newFrameReadyAtTime(const CMTime& frameTime, int textureIndex) override;
    void setInputFramebuffer(std::shared_ptr<GPUImageFramebuffer> framebuffer, int textureIndex) override;
    void setInputSize(CGSize size, int textureIndex) override;
    void setInputRotation(GPUImageRotationMode rotation, int textureIndex) override;

private:
    PushedFrame lastFrame() const;
    void push();

    std::atomic<bool> m_shut{false};
    std::atomic<bool> m_expectsFirst{true};
    mutable std::mutex m_mutex; ///< for what follows
    FrameHandler m_handler;
    CGSize m_uprightSize;
    CMTime m_time;
    CMTime m_offset = kCMTimeZero;

    // On the video processing queue.
    struct Frame {
        FramebufferHold framebuffer;
        CGSize size;
        GPUImageRotationMode rotation = kGPUImageNoRotation;
    };
    Frame m_coming;
    Frame m_last;
};

} // namespace lamina
