#pragma once

#include "gpu/core/GPUImageFramebuffer.h"
#include "gpu/core/GPUImageRotationMode.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"

#include <memory>

namespace lamina {

/// Whatever takes frames: filters, views, writers. A consumer has one or more numbered slots. Everything but the
/// questions (`nextAvailableTextureIndex`, `maximumOutputSize`, `shouldIgnoreUpdatesToThisTarget`, `enabled`,
/// `wantsMonochromeInput`) is called on the video processing queue.
class GPUImageInput {
public:
    virtual ~GPUImageInput() = default;

    /// A frame for the slot has arrived; it is consumed within the call.
    virtual void newFrameReadyAtTime(const CMTime& frameTime, int textureIndex) = 0;
    /// What the slot's next frame stands in; the consumer takes one count on it, or none if it does not use it. May be
    /// null.
    virtual void setInputFramebuffer(std::shared_ptr<GPUImageFramebuffer> framebuffer, int textureIndex) = 0;
    /// The slot that a new source would fill.
    virtual int nextAvailableTextureIndex() const = 0;
    /// Size of the slot's frame in pixels; the zero size when its source has been removed.
    virtual void setInputSize(CGSize size, int textureIndex) = 0;
    /// How the slot's frames lie; they are to be turned as they are drawn.
    virtual void setInputRotation(GPUImageRotationMode rotation, int textureIndex) = 0;
    /// The largest useful size of a frame; the zero size if there is none.
    virtual CGSize maximumOutputSize() const = 0;
    /// The source has ended.
    virtual void endProcessing() = 0;
    /// The source is not to push to this consumer.
    virtual bool shouldIgnoreUpdatesToThisTarget() const = 0;
    /// False: it does without frames for now. Producers that ask leave it out.
    virtual bool enabled() const = 0;
    /// One channel would do.
    virtual bool wantsMonochromeInput() const = 0;
    /// Whether frames of one channel are coming. Told before each frame.
    virtual void setCurrentlyReceivingMonochromeInput(bool monochrome) = 0;
};

} // namespace lamina
