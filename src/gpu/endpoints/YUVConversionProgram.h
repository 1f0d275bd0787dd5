#pragma once

#include "gpu/core/FramebufferHold.h"
#include "gpu/core/GLProgram.h"
#include "gpu/core/GPUImageFramebuffer.h"
#include "gpu/core/GPUImageRotationMode.h"
#include "gpu/core/GPUTextureOptions.h"
#include "gpu/core/GPUVectors.h"
#include "platform/base/CGGeometry.h"
#include "platform/gl/GLHeaders.h"
#include "platform/media/CVPixelBuffer.h"

#include <memory>

namespace lamina {

/// Draws frames of a plane of Y and one of Cb Cr as red, green and blue, for movies and cameras. All of it on the video
/// processing queue.
class YUVConversionProgram {
public:
    /// Links the program for such levels, unless that is done.
    void setup(bool fullRange);

    /// Brings both planes up to textures of the pool. False when memory is short or there is no device.
    bool uploadPlanes(const CVPixelBuffer& frame);
    /// Draws what was uploaded last, turned and at `size`, into a framebuffer that comes with a count of the caller's,
    /// and lets go of the planes. Null where the program can't be had.
    std::shared_ptr<GPUImageFramebuffer> draw(CGSize size, const GPUMatrix3x3& conversion,
                                              const GPUTextureOptions& options, GPUImageRotationMode rotation);

private:
    std::shared_ptr<GLProgram> m_program;
    bool m_isFullRange = false;
    GLuint m_positionAttribute = 0;
    GLuint m_textureCoordinateAttribute = 0;
    GLint m_luminanceTextureUniform = -1;
    GLint m_chrominanceTextureUniform = -1;
    GLint m_matrixUniform = -1;
    FramebufferHold m_luminance;
    FramebufferHold m_chrominance;
};

} // namespace lamina
