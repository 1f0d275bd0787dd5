#pragma once

#include "gpu/core/FramebufferHold.h"
#include "gpu/core/GLProgram.h"
#include "gpu/core/GPUImageInput.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"
#include "platform/gl/GLHeaders.h"
#include "platform/image/pixels/PixelBuffer.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>

namespace lamina {

/// A pixel as bytes.
struct GPUByteColorVector {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    std::uint8_t alpha = 0;
    friend bool operator==(const GPUByteColorVector&, const GPUByteColorVector&) = default;
};

/// The end of a graph that gives its pixels as bytes. A frame is drawn at `imageSize`, stretched, and read when its
/// bytes are first asked for.
///
/// From any thread but for what `GPUImageInput` brings; what has to do with frames waits for the video processing
/// queue.
class GPUImageRawDataOutput : public GPUImageInput {
public:
    /// `imageSize`: of the bytes, in pixels (cut to whole ones). Bytes come in the order red, green, blue, alpha, or
    /// blue first.
    GPUImageRawDataOutput(CGSize imageSize, bool resultsInBGRAFormat);

    /// The last frame's bytes, four a pixel without gaps, the top row first; opaque black before the first frame. The
    /// memory is this object's: it changes with the next call after a further frame or another size, and ends with the
    /// object. Empty where the size is or memory is short; zeros without a device.
    std::span<const std::uint8_t> rawBytesForImage();
    /// Bytes from row to row of the frame that is locked for reading; 0 while none is.
    std::size_t bytesPerRowInOutput() const;
    /// The pixel at a place in pixels, whose y counts upwards from the bottom edge; places outside mean the nearest
    /// pixel. Red comes first whatever the bytes' order.
    GPUByteColorVector colorAtLocation(CGPoint location);

    /// The size of the bytes.
    CGSize imageSize() const;
    /// For the reads to come. Of a frame that has been read already only a still picture is drawn again.
    void setImageSize(CGSize imageSize);

    /// Keeps the next frame that is drawn for reading, so that its framebuffer is not used for another.
    void lockFramebufferForReading();
    /// Gives it back.
    void unlockFramebufferAfterReading();

    using NewFrameAvailableBlock = std::function<void()>;
    /// Called on the queue for each frame. It may ask for the bytes; waiting for the main queue is not allowed.
    void setNewFrameAvailableBlock(NewFrameAvailableBlock block);

    void setEnabled(bool enabled) { m_enabled = enabled; }

    void newFrameReadyAtTime(const CMTime& frameTime, int textureIndex) override;
    void setInputFramebuffer(std::shared_ptr<GPUImageFramebuffer> framebuffer, int textureIndex) override;
    int nextAvailableTextureIndex() const override { return 0; }
    void setInputSize(CGSize size, int textureIndex) override;
    void setInputRotation(GPUImageRotationMode rotation, int textureIndex) override;
    CGSize maximumOutputSize() const override { return imageSize(); }
    void endProcessing() override {}
    bool shouldIgnoreUpdatesToThisTarget() const override { return false; }
    bool enabled() const override { return m_enabled; }
    bool wantsMonochromeInput() const override { return false; }
    void setCurrentlyReceivingMonochromeInput(bool) override {}

private:
    FramebufferHold renderAtInternalSize();
    void drawInput() const;
    void readFrame();

    const bool m_outputBGRA;
    std::atomic<bool> m_enabled{true};
    std::shared_ptr<GLProgram> m_dataProgram;
    GLuint m_dataPositionAttribute = 0;
    GLuint m_dataTextureCoordinateAttribute = 0;
    GLint m_dataInputTextureUniform = -1;

    // Touched on the queue.
    CGSize m_imageSize;
    GPUImageRotationMode m_inputRotation = kGPUImageNoRotation;
    FramebufferHold m_firstInputFramebuffer;
    FramebufferHold m_retainedFramebuffer;
    bool m_lockNextFramebuffer = false;
    bool m_hasReadFromTheCurrentFrame = false;
    PixelBuffer m_rawBytesForImage;
    NewFrameAvailableBlock m_newFrameAvailableBlock;
};

} // namespace lamina
