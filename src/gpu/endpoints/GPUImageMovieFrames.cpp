#include "gpu/core/GPUImageFramebuffer.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "gpu/endpoints/FrameUpload.h"
#include "gpu/endpoints/GPUImageMovie.h"
#include "platform/base/Clock.h"
#include "platform/base/Log.h"
#include "platform/base/NumberText.h"

#include <memory>
#include <mutex>
#include <utility>

// How a movie's frames come into the graph.

namespace lamina {

void GPUImageMovie::yuvConversionSetup()
{
    runSynchronouslyOnVideoProcessingQueue([this] { m_upload.setupForFullRange(); });
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
        sample.imageBuffer ? m_upload.framebufferOf(*sample.imageBuffer, outputTextureOptions()) : nullptr;
    if (!framebuffer) {
        logError("A frame of the movie could not be shown");
        return false;
    }
    pushToTargets({.framebuffer = std::move(framebuffer),
                   .size = FrameUpload::sizeOf(*sample.imageBuffer),
                   .time = sample.presentationTime,
                   .rotation = rotation(),
                   .givesUpCount = true});
    if (m_runBenchmark)
        logInfo("Current frame time : " + fixedText(1000 * (Clock::shared()->now() - started), 6) + " ms");
    return true;
}

} // namespace lamina
