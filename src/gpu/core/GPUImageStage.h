#pragma once

#include "gpu/core/GPUImageOutput.h"
#include "platform/image/pixels/AlphaForm.h"

namespace lamina {

/// Takes frames and gives frames: what single filters and groups of them have in common, and what the registry makes.
class GPUImageStage : public GPUImageOutput, public GPUImageInput {
public:
    bool shouldIgnoreUpdatesToThisTarget() const override { return GPUImageOutput::shouldIgnoreUpdatesToThisTarget(); }
    bool enabled() const override { return GPUImageOutput::enabled(); }

    /// Whether its programs stand; false after a shader failed to build or where there is no GL context. A stage that
    /// can't render gives no picture.
    virtual bool canRender() const = 0;

    /// What its formula takes the colours of all inputs for, and what it gives. Straight unless a filter says
    /// otherwise. Who feeds pictures to a stage that works on premultiplied colours uploads them so (see
    /// `PictureUpload`); what is captured from it has straight alpha again.
    virtual AlphaForm alphaForm() const { return AlphaForm::Straight; }
};

} // namespace lamina
