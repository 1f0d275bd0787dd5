#pragma once

#include "gpu/core/GPUImageInput.h"
#include "platform/base/CGGeometry.h"

namespace lamina {

/// A consumer of one slot that always wants its frames, in colour and of any size, and makes nothing of their end: what
/// is left to say is what it does with a frame. As for all consumers, on the video processing queue.
class GPUImageTarget : public GPUImageInput {
public:
    int nextAvailableTextureIndex() const override { return 0; }
    CGSize maximumOutputSize() const override { return {}; }
    void endProcessing() override {}
    bool shouldIgnoreUpdatesToThisTarget() const override { return false; }
    bool enabled() const override { return true; }
    bool wantsMonochromeInput() const override { return false; }
    void setCurrentlyReceivingMonochromeInput(bool) override {}
};

} // namespace lamina
