#pragma once

#include "gpu/core/GPUImageFramebuffer.h"
#include "gpu/core/GPUImageRotationMode.h"
#include "gpu/core/GPUTextureOptions.h"
#include "gpu/core/GPUVectors.h"
#include "gpu/endpoints/YUVConversionProgram.h"
#include "platform/base/CGGeometry.h"
#include "platform/media/CVPixelBuffer.h"

#include <atomic>
#include <memory>

namespace lamina {

/// How frames of movies and cameras come into the graph: planes of Y and of Cb Cr by a pass of the device; blue, green
/// and red as they are, into our own memory where filters work there, else into a texture.
///
/// On the video processing queue, but for what only tells a value.
class FrameUpload {
public:
    /// `conversion`: what is told until a frame has been seen.
    explicit FrameUpload(const GPUMatrix3x3& conversion)
        : m_preferredConversion(&conversion)
    {
    }

    /// Makes the program for frames of full range; `framebufferOf` makes what it needs by itself.
    void setupForFullRange();

    /// Whether a turn costs nothing more here, so that targets need not be told one.
    static bool turnsFrames(CVPixelFormat format);
    /// The frame in a framebuffer that comes with a count of the caller's, turned where `turnsFrames` says so. Null
    /// where it can't be had.
    std::shared_ptr<GPUImageFramebuffer> framebufferOf(const CVPixelBuffer& frame, const GPUTextureOptions& options,
                                                       GPUImageRotationMode rotation = kGPUImageNoRotation);

    /// In pixels, as it comes.
    static CGSize sizeOf(const CVPixelBuffer& frame)
    {
        return {double(frame.size().width), double(frame.size().height)};
    }

    /// Of the last frame, by its tag and levels. From any thread.
    GPUMatrix3x3 preferredConversion() const { return *m_preferredConversion.load(); }
    bool isFullYUVRange() const { return m_isFullYUVRange; }
    /// Of the frames that were converted on the device: set anew only when both sides change. From any thread.
    int imageBufferWidth() const { return m_imageBufferWidth; }
    int imageBufferHeight() const { return m_imageBufferHeight; }

private:
    std::shared_ptr<GPUImageFramebuffer> converted(const CVPixelBuffer& frame, const GPUTextureOptions& options,
                                                   GPUImageRotationMode rotation);

    YUVConversionProgram m_yuvConversion;
    std::atomic<const GPUMatrix3x3*> m_preferredConversion;
    std::atomic<bool> m_isFullYUVRange{false};
    std::atomic<int> m_imageBufferWidth{0};
    std::atomic<int> m_imageBufferHeight{0};
};

} // namespace lamina
