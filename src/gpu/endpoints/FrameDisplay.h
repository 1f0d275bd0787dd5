#pragma once

#include "gpu/core/FilterProgram.h"
#include "gpu/core/FramebufferHold.h"
#include "gpu/core/GLProgram.h"
#include "gpu/core/GPUImageFramebuffer.h"
#include "gpu/core/GPUImageRotationMode.h"
#include "gpu/endpoints/DisplayDrawable.h"
#include "gpu/endpoints/FrameExchange.h"
#include "gpu/endpoints/PictureBuffers.h"
#include "gpu/kernels/KernelFrame.h"
#include "platform/base/CGGeometry.h"
#include "platform/gl/GLHeaders.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PixelBuffer.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace lamina {

/// A view's side on the video processing queue, where all of it happens and its end too: takes frames, draws them into
/// pictures of the view's size, and leaves these in an exchange. It keeps the last frame until the next, to draw it
/// anew in another size; not when its source has gone.
///
/// Where the processor works on frames by itself (`GPUImageContext::usesKernels`), it scales their pixels straight into
/// the picture. Otherwise GL draws them into a drawable, which is read back.
class FrameDisplay {
public:
    /// `pictureIsReady`: called on the queue when there is one in the exchange.
    FrameDisplay(std::shared_ptr<FrameExchange> exchange, std::function<void()> pictureIsReady);
    ~FrameDisplay();
    FrameDisplay(const FrameDisplay&) = delete;
    FrameDisplay& operator=(const FrameDisplay&) = delete;

    void setInputFramebuffer(std::shared_ptr<GPUImageFramebuffer> framebuffer);
    void setInputSize(CGSize size);
    void setInputRotation(GPUImageRotationMode rotation) { m_inputRotation = rotation; }
    /// Draws what has been set, or keeps it until it is wanted.
    void newFrameReady();
    /// Draws what is kept, if it is wanted now.
    void drawIfWanted();
    /// Draws what is kept anew, if what is on show was drawn for another size.
    void sizeHasSettled();

private:
    /// What is to be drawn, which its source may have forgotten by then.
    struct Frame {
        FramebufferHold framebuffer;
        CGSize imageSize;
        GPUImageRotationMode rotation = kGPUImageNoRotation;
        bool isDrawn = false;
    };

    std::optional<DisplayedFrame> drawn();
    bool prepareDrawable();
    void createDisplayFramebuffer(const DisplayGeometry& geometry);
    void destroyDisplayFramebuffer();
    bool setDisplayFramebuffer();
    bool presentFramebuffer(std::uint8_t* pixels);
    bool setupProgram();
    bool drawOnProcessor(std::uint8_t* pixels);
    KernelPixels uprightPixels(const CGImage& picture);
    bool drawByGL(std::uint8_t* pixels);
    void recalculateViewGeometry();
    CGRect placeOfFrame() const;

    std::shared_ptr<FrameExchange> m_exchange;
    std::function<void()> m_pictureIsReady;
    GPUImageRotationMode m_inputRotation = kGPUImageNoRotation;
    FramebufferHold m_inputFramebufferForDisplay;
    CGSize m_inputImageSize;
    Frame m_frame;

    IntSize m_sizeInPixels;
    CGSize m_boundsSizeAtFrameBufferEpoch;
    PictureBuffers m_pictures;
    std::unique_ptr<DisplayDrawable> m_drawable; ///< made when GL first draws
    CGSize m_scaling{1, 1};
    QuadCoordinates m_imageVertices{};
    PixelBuffer m_turned; ///< the pixels of a frame that lies turned

    std::shared_ptr<GLProgram> m_displayProgram;
    GLuint m_displayPositionAttribute = 0;
    GLuint m_displayTextureCoordinateAttribute = 0;
    GLint m_displayInputTextureUniform = -1;
};

} // namespace lamina
