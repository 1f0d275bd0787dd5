#pragma once

#include "gpu/core/FramebufferHold.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/GPUImageFramebuffer.h"
#include "gpu/core/GPUImageRotationMode.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"
#include "platform/gl/GLHeaders.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace lamina {

/// Passes a second coordinate on as `textureCoordinate2`.
extern const char* const kGPUImageTwoInputTextureVertexShaderString;

/// A filter that draws when both slots have a frame. One of them may be a still picture, or what filters make of one,
/// that comes once while the other streams: then each frame of the stream draws. An input whose time is indefinite is
/// kept, with its count, until the slot's next frame, the removal of its source, or the filter's end; all others are
/// given back after the draw. The output has the size of slot 0; other inputs are stretched to it.
///
/// The fragment shader gets `inputImageTexture2` and `textureCoordinate2` for slot 1.
///
/// Filters of more inputs derive from it; the bookkeeping of all slots stands here. With three and more, a stream draws
/// beside a still only where the still fills slot 0, and the time passed on is that of the frame that completed the
/// set; with two it is the first slot's, unless that is indefinite.
class GPUImageTwoInputFilter : public GPUImageFilter {
public:
    explicit GPUImageTwoInputFilter(const std::string& fragmentShader);
    GPUImageTwoInputFilter(const std::string& vertexShader, const std::string& fragmentShader);

    /// The slot is fed once: after that it is not waited for. For good.
    void disableFirstFrameCheck() { disableFrameCheck(0); }
    void disableSecondFrameCheck() { disableFrameCheck(1); }

    void newFrameReadyAtTime(const CMTime& frameTime, int textureIndex) override;
    void setInputFramebuffer(std::shared_ptr<GPUImageFramebuffer> framebuffer, int textureIndex) override;
    /// The slot after the highest that has a source; the last one, whatever it has, when all have.
    int nextAvailableTextureIndex() const override;
    void setInputSize(CGSize size, int textureIndex) override;
    void setInputRotation(GPUImageRotationMode rotation, int textureIndex) override;
    CGSize rotatedSize(CGSize size, int textureIndex) const override;

protected:
    /// For three and more inputs: slot i brings `inputTextureCoordinate` and `inputImageTexture` with the number i + 1.
    GPUImageTwoInputFilter(const std::string& vertexShader, const std::string& fragmentShader, std::size_t inputs);

    void disableFrameCheck(std::size_t slot);

    std::size_t inputCount() const override { return m_slots.size(); }
    Input inputAt(std::size_t slot) const override;
    void unlockInputs() override;
    void bindFurtherInputs() override;
    void disableFurtherArrays() override;

private:
    /// Framebuffer, rotation, attribute and uniform of slot 0 are the base's.
    struct Slot {
        FramebufferHold inputFramebuffer;
        GLuint textureCoordinateAttribute = 0;
        GLint inputTextureUniform = -1;
        GPUImageRotationMode inputRotation = kGPUImageNoRotation;
        CMTime frameTime = kCMTimeInvalid;
        bool hasSetTexture = false;
        bool hasReceivedFrame = false;
        bool frameCheckDisabled = false;
    };
    /// An index beyond the last slot means that one.
    std::size_t slotIndex(int textureIndex) const;
    FramebufferHold& heldBy(std::size_t slot);
    bool haveReceived(std::size_t slots) const;
    void noteArrival(const CMTime& frameTime, std::size_t slot);
    CMTime timePassedOn(const CMTime& frameTime) const;

    std::vector<Slot> m_slots;
};

} // namespace lamina
