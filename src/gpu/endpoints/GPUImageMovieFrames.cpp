#include "gpu/core/FramebufferHold.h"
#include "gpu/core/GPUImageContext.h"
#include "gpu/core/GPUImageFramebuffer.h"
#include "gpu/core/TextureUpload.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "gpu/endpoints/GPUImageMovie.h"
#include "gpu/endpoints/YUVConversion.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Clock.h"
#include "platform/base/Log.h"
#include "platform/base/NumberText.h"
#include "platform/base/WorkerPool.h"
#include "platform/gl/GLHeaders.h"
#include "platform/image/pixels/PixelKernels.h"

#include <cstddef>
#include <cstdint>
#include <utility>

// How a movie's frames come into the graph.

namespace lamina {

namespace {

CGSize sizeOf(const CVPixelBuffer& frame)
{
    return {double(frame.size().width), double(frame.size().height)};
}

/// For filters that work on the pixels in our own memory. False where there is none.
bool copyRedFirst(const CVPixelBuffer::Plane& pixels, std::uint8_t* rows)
{
    if (!rows)
        return false;
    const auto width = static_cast<std::size_t>(pixels.size.width);
    parallelRows(0, pixels.size.height, width, [&](int first, int last) {
        for (auto y = static_cast<std::size_t>(first); y < static_cast<std::size_t>(last); ++y)
            kernels::reorder(pixels.bytes + y * pixels.bytesPerRow, width, {2, 1, 0, 3}, 0, rows + 4 * width * y);
    });
    return true;
}

} // namespace

void GPUImageMovie::yuvConversionSetup()
{
    runSynchronouslyOnVideoProcessingQueue([this] {
        m_isFullYUVRange = true;
        m_preferredConversion = &kColorConversionMatrix601FullRange;
        m_yuvConversion.setup(true);
    });
}

GPUMatrix3x3 GPUImageMovie::preferredConversion() const
{
    return valueFromVideoProcessingQueue([this] { return *m_preferredConversion; });
}

void GPUImageMovie::processMovieFrame(const CMSampleBuffer& sample)
{
    runSynchronouslyOnVideoProcessingQueue([&] { pushFrame(sample); });
}

void GPUImageMovie::processMovieFrame(const std::shared_ptr<CVPixelBuffer>& movieFrame, const CMTime& sampleTime)
{
    CMSampleBuffer sample;
    sample.presentationTime = sampleTime;
    sample.imageBuffer = movieFrame;
    processMovieFrame(sample);
}

bool GPUImageMovie::pushFrame(const CMSampleBuffer& sample)
{
    const double started = Clock::shared()->now();
    {
        const std::scoped_lock lock(m_mutex);
        m_processingFrameTime = sample.presentationTime;
    }
    std::shared_ptr<GPUImageFramebuffer> framebuffer =
        sample.imageBuffer ? framebufferOf(*sample.imageBuffer) : nullptr;
    if (!framebuffer) {
        logError("A frame of the movie could not be shown");
        return false;
    }
    pushToTargets({.framebuffer = std::move(framebuffer),
                   .size = sizeOf(*sample.imageBuffer),
                   .time = sample.presentationTime,
                   .rotation = rotation(),
                   .givesUpCount = true});
    if (m_runBenchmark)
        logInfo("Current frame time : " + fixedText(1000 * (Clock::shared()->now() - started), 6) + " ms");
    return true;
}

std::shared_ptr<GPUImageFramebuffer> GPUImageMovie::framebufferOf(const CVPixelBuffer& frame)
{
    const CVPixelFormat format = frame.pixelFormat();
    m_isFullYUVRange = format == CVPixelFormat::BiPlanar420FullRange;
    m_preferredConversion = &colorConversionMatrix(frame.matrix(), m_isFullYUVRange);
    if (format == CVPixelFormat::BGRA)
        return uploadedFrame(frame);
    return format == CVPixelFormat::AsDecoded ? nullptr : convertYUVToRGBOutput(frame);
}

std::shared_ptr<GPUImageFramebuffer> GPUImageMovie::uploadedFrame(const CVPixelBuffer& frame) const
{
    const CVPixelBuffer::Plane& pixels = frame.planes().front();
    FramebufferHold framebuffer;
    framebuffer =
        GPUImageContext::sharedFramebufferCache().fetchFramebufferForSize(sizeOf(frame), outputTextureOptions(), true);
    const bool isThere =
        GPUImageContext::usesKernels()
            ? copyRedFirst(pixels, framebuffer->hostPixelsToWrite())
            : uploadTexture(
                  *framebuffer,
                  {.bytes = pixels.bytes, .size = frame.size(), .format = GL_BGRA, .bytesPerRow = pixels.bytesPerRow});
    return isThere ? framebuffer.release() : nullptr;
}

std::shared_ptr<GPUImageFramebuffer> GPUImageMovie::convertYUVToRGBOutput(const CVPixelBuffer& frame)
{
    // Both have to change, so that a stream that only grows in one direction keeps what was told at its start.
    if (frame.size().width != m_imageBufferWidth && frame.size().height != m_imageBufferHeight) {
        m_imageBufferWidth = frame.size().width;
        m_imageBufferHeight = frame.size().height;
    }
    m_yuvConversion.setup(m_isFullYUVRange);
    if (!m_yuvConversion.uploadPlanes(frame))
        return nullptr;
    return m_yuvConversion.draw(sizeOf(frame), *m_preferredConversion, outputTextureOptions());
}

} // namespace lamina
