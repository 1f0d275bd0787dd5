#pragma once

#include "gpu/core/FramebufferHold.h"
#include "gpu/core/GPUImageInput.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"
#include "platform/gl/GLHeaders.h"

#include <atomic>
#include <memory>

namespace lamina {

class GPUImageTextureOutput;

/// Who is told of each frame that a texture output has.
class GPUImageTextureOutputDelegate {
public:
    virtual ~GPUImageTextureOutputDelegate() = default;
    /// A frame stands in `output.texture()`, sampled smoothly. On the video processing queue, with the graph's context
    /// in force; it must not wait for the main queue. Whoever reads the texture in another context that shares its
    /// objects calls glFlush here first.
    virtual void newFrameReadyFromTextureOutput(GPUImageTextureOutput& output) = 0;
};

/// The end of a graph that gives its frames as textures.
///
/// A texture is kept from being drawn into again until `doneWithTexture` or the next frame, whichever comes first. From
/// any thread but for what `GPUImageInput` brings.
class GPUImageTextureOutput : public GPUImageInput {
public:
    /// The texture of the frame that is held, to be read only; 0 while none is.
    GLuint texture() const { return m_texture; }
    /// Its size in pixels, and how it must be turned to be seen upright. For the delegate, on the queue.
    CGSize textureSize() const { return m_textureSize; }
    GPUImageRotationMode inputRotation() const { return m_inputRotation; }
    /// Gives the frame's texture back to the graph; waits for the queue.
    void doneWithTexture();

    /// Not held. Default none.
    void setDelegate(const std::shared_ptr<GPUImageTextureOutputDelegate>& delegate);
    std::shared_ptr<GPUImageTextureOutputDelegate> delegate() const;

    void setEnabled(bool enabled) { m_enabled = enabled; }

    void newFrameReadyAtTime(const CMTime& frameTime, int textureIndex) override;
    void setInputFramebuffer(std::shared_ptr<GPUImageFramebuffer> framebuffer, int textureIndex) override;
    int nextAvailableTextureIndex() const override { return 0; }
    void setInputSize(CGSize size, int textureIndex) override;
    void setInputRotation(GPUImageRotationMode rotation, int) override { m_inputRotation = rotation; }
    CGSize maximumOutputSize() const override { return {}; }
    void endProcessing() override {}
    bool shouldIgnoreUpdatesToThisTarget() const override { return false; }
    bool enabled() const override { return m_enabled; }
    bool wantsMonochromeInput() const override { return false; }
    void setCurrentlyReceivingMonochromeInput(bool) override {}

private:
    std::atomic<bool> m_enabled{true};
    std::atomic<GLuint> m_texture{0};

    // Touched on the queue.
    FramebufferHold m_firstInputFramebuffer;
    CGSize m_textureSize;
    GPUImageRotationMode m_inputRotation = kGPUImageNoRotation;
    std::weak_ptr<GPUImageTextureOutputDelegate> m_delegate;
};

} // namespace lamina
