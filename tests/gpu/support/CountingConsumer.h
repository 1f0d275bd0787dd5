#pragma once

#include "gpu/core/FramebufferHold.h"
#include "gpu/core/GPUImageInput.h"
#include "platform/image/pixels/CGImage.h"

#include <string>
#include <utility>
#include <vector>

namespace lamina::test {

/// The end of a graph: writes down what it is told, in order, and keeps the pixels of what it gets. Read it while no
/// frame is under way.
class CountingConsumer : public GPUImageInput {
public:
    struct Frame {
        CMTime time;
        int slot = 0;
        CGSize size;                                    ///< as told by `setInputSize`
        unsigned counts = 0;                            ///< of the framebuffer when the frame arrived
        std::weak_ptr<GPUImageFramebuffer> framebuffer; ///< held by whoever holds it
        CGImage pixels;                                 ///< empty where nothing was drawn into it
    };

    void setShouldIgnoreUpdates(bool ignore) { m_ignoresUpdates = ignore; }
    void setWantsMonochrome(bool wants) { m_wantsMonochrome = wants; }
    void setEnabled(bool enabled) { m_enabled = enabled; }
    /// Writes the name and the slot into `log` at every frame: the order among several.
    void logTo(std::vector<std::string>& log, std::string name)
    {
        m_log = &log;
        m_name = std::move(name);
    }

    const std::vector<Frame>& frames() const { return m_frames; }
    const Frame& last() const { return m_frames.at(m_frames.size() - 1); }
    int endings() const { return m_endings; }
    bool toldMonochrome() const { return m_receivesMonochrome; }
    CGSize toldSize() const { return m_size; }
    GPUImageRotationMode toldRotation() const { return m_rotation; }

    void newFrameReadyAtTime(const CMTime& frameTime, int textureIndex) override;
    void setInputFramebuffer(std::shared_ptr<GPUImageFramebuffer> framebuffer, int textureIndex) override;
    int nextAvailableTextureIndex() const override { return 0; }
    void setInputSize(CGSize size, int) override { m_size = size; }
    void setInputRotation(GPUImageRotationMode rotation, int) override { m_rotation = rotation; }
    CGSize maximumOutputSize() const override { return {}; }
    void endProcessing() override { ++m_endings; }
    bool shouldIgnoreUpdatesToThisTarget() const override { return m_ignoresUpdates; }
    bool enabled() const override { return m_enabled; }
    bool wantsMonochromeInput() const override { return m_wantsMonochrome; }
    void setCurrentlyReceivingMonochromeInput(bool monochrome) override { m_receivesMonochrome = monochrome; }

private:
    std::vector<Frame> m_frames;
    FramebufferHold m_framebuffer;
    CGSize m_size;
    GPUImageRotationMode m_rotation = kGPUImageNoRotation;
    std::vector<std::string>* m_log = nullptr;
    std::string m_name;
    int m_endings = 0;
    bool m_ignoresUpdates = false;
    bool m_wantsMonochrome = false;
    bool m_receivesMonochrome = false;
    bool m_enabled = true;
};

} // namespace lamina::test
