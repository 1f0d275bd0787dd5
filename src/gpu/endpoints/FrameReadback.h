#pragma once

#include "gpu/core/GLProgram.h"
#include "gpu/core/GPUImageRotationMode.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/gl/GLHeaders.h"
#include "platform/media/CVPixelBuffer.h"

#include <cstdint>
#include <memory>

namespace lamina {

class GPUImageContext;

/// Brings frames of the graph into pixel buffers, by a context of its own in the graph's sharegroup.
///
/// A frame that lies as it is wanted is read from its texture, as `RGBA`: in the order in which textures keep it. Any
/// other is drawn first, at the wanted size and the right way up, as `BGRA`. GL objects are made once.
///
/// All of it on the context's queue, where it must be destroyed too.
class FrameReadback {
public:
    /// `videoSize`: of the pixel buffers.
    FrameReadback(GPUImageContext& context, IntSize videoSize);
    ~FrameReadback();
    FrameReadback(const FrameReadback&) = delete;
    FrameReadback& operator=(const FrameReadback&) = delete;

    /// Whether it can read at all: the error names what the device lacks.
    Outcome availability() const;

    /// A frame as its texture holds it, complete on the device.
    struct Frame {
        GLuint texture = 0;
        IntSize size;
        GPUImageRotationMode rotation = kGPUImageNoRotation;
    };
    /// The pixels. The error: the device is lost, or memory is short.
    Result<std::shared_ptr<CVPixelBuffer>> read(const Frame& frame);

private:
    std::shared_ptr<CVPixelBuffer> readPixels(CVPixelFormat format) const;
    bool attachTexture(GLuint texture);
    bool createDataFBO();
    void destroyDataFBO();
    bool setFilterFBO();
    bool renderAtInternalSizeUsingFramebuffer(const Frame& frame);

    GPUImageContext& m_movieWriterContext;
    const IntSize m_videoSize;
    GLuint m_textureFramebuffer = 0; ///< frames are attached to it in turn
    GLuint m_movieFramebuffer = 0;
    GLuint m_movieRenderbuffer = 0;
    std::shared_ptr<GLProgram> m_colorSwizzlingProgram;
    GLuint m_colorSwizzlingPositionAttribute = 0;
    GLuint m_colorSwizzlingTextureCoordinateAttribute = 0;
    GLint m_colorSwizzlingInputTextureUniform = -1;
};

} // namespace lamina
