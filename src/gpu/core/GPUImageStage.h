#pragma once

#include "gpu/core/GPUImageOutput.h"

namespace lamina {

/// Takes frames and gives frames: what single filters and groups of them have in common, and what the registry makes.
class GPUImageStage : public GPUImageOutput, public GPUImageInput {
public:
    bool shouldIgnoreUpdatesToThisTarget() const override { return GPUImageOutput::shouldIgnoreUpdatesToThisTarget(); }
    bool enabled() const override { return GPUImageOutput::enabled(); }

    /// Whether its programs stand; false after a shader failed to build or where there is no GL context. A stage that
    /// can't render gives no picture.
    virtual bool canRender() const = 0;
};

} // namespace lamina
