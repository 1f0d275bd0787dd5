#include "gpu/core/GPUImageContext.h"
#include "gpu/core/GPUImageFramebuffer.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "gpu/endpoints/GPUImageMovieWriter.h"
#include "platform/base/Log.h"
#include "platform/media/CVPixelBuffer.h"

#include <cstdint>
#include <utility>

// How frames come from the video processing queue to the writer's, and pieces from there to the encoder.

namespace lamina {

namespace {

/// In a live recording frames come when they come, and the writer catches up. Others are made as fast as they are
/// taken: there one is drawn while the next is made, and more would only take memory.
constexpr int kMostWaitingLive = 3;
constexpr int kMostWaiting = 1;

/// How long an input is waited for before it is asked whether the recording goes on.
constexpr double kPatience = 0.1;

/// A frame that lies in our own memory, without a copy; null for others.
std::shared_ptr<CVPixelBuffer> pixelsAtHand(const GPUImageFramebuffer& framebuffer)
{
    const auto pixels = std::const_pointer_cast<std::uint8_t>(framebuffer.hostPixelsAtHand());
    if (!pixels)
        return nullptr;
    const IntSize size = framebuffer.pixelSize();
    return std::make_shared<CVPixelBuffer>(
        size, CVPixelFormat::RGBA, std::vector<CVPixelBuffer::Plane>{{pixels.get(), framebuffer.bytesPerRow(), size}},
        pixels);
}

} // namespace

/// A frame on its way: its pixels, or what they are to be read from.
struct GPUImageMovieWriter::TakenFrame {
    CMTime time;
    std::shared_ptr<CVPixelBuffer> pixels;
    FramebufferHold framebuffer;
    FrameReadback::Frame source;
    bool isToBeReadAtOnce = false;
};

/// In a live recording what comes while the input isn't ready. Where it never will be `append` tells why.
bool GPUImageMovieWriter::isToBeDropped(const Track& track) const
{
    return isLive() && !track.input->isReadyForMoreMediaData() &&
           m_assetWriter->status() == AVAssetWriterStatus::Writing;
}

/// Whether there is room for a frame. Where its producer is not to drop it waits, on the video processing queue.
bool GPUImageMovieWriter::waitForRoom()
{
    const bool isDropping = isLive();
    std::unique_lock lock(m_roomMutex);
    const auto isRoom = [&] { return m_framesUnderWay < (isDropping ? kMostWaitingLive : kMostWaiting); };
    if (!isDropping)
        m_roomChanged.wait(lock, [&] { return isRoom() || !m_isRecording; });
    if (!m_isRecording || !isRoom())
        return false;
    ++m_framesUnderWay;
    return true;
}

void GPUImageMovieWriter::leaveRoom()
{
    const std::scoped_lock lock(m_roomMutex);
    --m_framesUnderWay;
    m_roomChanged.notify_all();
}

void GPUImageMovieWriter::newFrameReadyAtTime(const CMTime& frameTime, int)
{
    FramebufferHold framebuffer;
    framebuffer.take(m_firstInputFramebuffer);
    m_firstInputFramebuffer.giveBack();
    if (!m_isRecording || paused() || !framebuffer)
        return;
    if (!waitForRoom()) {
        if (m_isRecording)
            logWarning("1: Had to drop a video frame: " + timeText(frameTime));
        return;
    }
    const std::optional<CMTime> time = m_times.takeFrame(frameTime);
    if (!time || !startSession(*time, m_video) || !GPUImageContext::useImageProcessingContext())
        return leaveRoom();
    const std::shared_ptr<TakenFrame> frame = take(std::move(framebuffer), *time);
    const auto write = [this, frame] {
        writeFrame(*frame);
        leaveRoom();
    };
    if (frame->isToBeReadAtOnce)
        runSynchronouslyOnContextQueue(*m_movieWriterContext, write);
    else
        runOnWriterQueue(write);
}

/// On the video processing queue.
std::shared_ptr<GPUImageMovieWriter::TakenFrame> GPUImageMovieWriter::take(FramebufferHold framebuffer,
                                                                           const CMTime& time) const
{
    auto frame = std::make_shared<TakenFrame>();
    frame->time = time;
    const IntSize size = framebuffer->pixelSize();
    const bool isScaled = size != m_videoSize;
    if (!isScaled && m_inputRotation == kGPUImageNoRotation)
        frame->pixels = pixelsAtHand(*framebuffer);
    if (frame->pixels)
        return frame;
    framebuffer->bindForReading(isScaled ? TextureReads::Anywhere : TextureReads::TexelCentres);
    glFinish(); // what the other context reads must be there
    frame->source = {framebuffer->texture(), size, m_inputRotation};
    // Others who read the texture may choose other filters for it, and a picture that nobody counts may change.
    frame->isToBeReadAtOnce = !framebuffer.isCounted() || (isScaled && framebuffer->framebufferReferenceCount() > 1);
    frame->framebuffer = std::move(framebuffer);
    return frame;
}

/// On the writer's queue.
void GPUImageMovieWriter::writeFrame(TakenFrame& frame)
{
    if (!m_isRecording)
        return;
    if (isToBeDropped(m_video))
        return logWarning("1: Had to drop a video frame: " + timeText(frame.time));
    if (!frame.pixels) {
        const Result<std::shared_ptr<CVPixelBuffer>> pixels = m_readback->read(frame.source);
        if (!pixels)
            return fail(pixels.error());
        frame.pixels = *pixels;
        const FramebufferHold done = std::move(frame.framebuffer); // given back before the encoder is waited for
    }
    CMSampleBuffer sample;
    sample.presentationTime = frame.time;
    sample.imageBuffer = std::move(frame.pixels);
    append(*m_video.input, sample, {"2: Had to drop a video frame: ", "Problem appending pixel buffer at time: "});
}

/// On the writer's queue, or on the thread of whoever brings sound and may wait.
void GPUImageMovieWriter::append(AVAssetWriterInput& input, const CMSampleBuffer& sample, const AppendTexts& texts)
{
    const auto isWriting = [this] { return m_assetWriter->status() == AVAssetWriterStatus::Writing; };
    while (!input.isReadyForMoreMediaData() && !isLive() && !input.isFinished() && m_isRecording && isWriting())
        input.waitUntilReady(kPatience);
    const bool isReady = input.isReadyForMoreMediaData();
    if ((isReady && input.appendSampleBuffer(sample)) || !m_isRecording)
        return;
    if (isWriting())
        return logWarning((isReady ? texts.failed : texts.dropped) + timeText(sample.presentationTime));
    logWarning("Couldn't write a frame");
    if (const std::optional<Error> failure = m_assetWriter->error())
        fail(*failure);
}

} // namespace lamina
