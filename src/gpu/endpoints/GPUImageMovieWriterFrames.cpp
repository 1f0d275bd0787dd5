#include "gpu/core/GPUImageContext.h"
#include "gpu/core/GPUImageFramebuffer.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "gpu/endpoints/GPUImageMovieWriter.h"
#include "platform/base/Log.h"
#include "platform/media/CVPixelBuffer.h"

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

} // namespace

/// A frame on its way. It leaves the writer's queue early, since its framebuffer is wanted.
struct GPUImageMovieWriter::TakenFrame {
    FramebufferHold framebuffer;
    FrameReadback::Frame source;
    CMTime time;
};

/// In a live recording what comes while the input isn't ready. Where it never will be `append` tells why.
bool GPUImageMovieWriter::isToBeDropped(const Track& track) const
{
    return m_encodingLiveVideo && !track.input->isReadyForMoreMediaData() &&
           m_assetWriter->status() == AVAssetWriterStatus::Writing;
}

/// Whether there is room for a frame. Where its producer is not to drop it waits, on the video processing queue.
bool GPUImageMovieWriter::waitForRoom()
{
    std::unique_lock lock(m_roomMutex);
    const auto isRoom = [this] { return m_framesUnderWay < (m_encodingLiveVideo ? kMostWaitingLive : kMostWaiting); };
    if (!m_encodingLiveVideo)
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
    if (!m_isRecording || m_paused || !framebuffer)
        return;
    if (!waitForRoom()) {
        if (m_isRecording)
            logWarning("1: Had to drop a video frame: " + timeText(frameTime));
        return;
    }
    const std::optional<CMTime> time = m_times.takeFrame(frameTime);
    if (!time || !startSession(*time, m_video) || !GPUImageContext::useImageProcessingContext())
        return leaveRoom();
    const IntSize size = framebuffer->pixelSize();
    const bool isScaled = size != m_videoSize;
    framebuffer->bindForReading(isScaled ? TextureReads::Anywhere : TextureReads::TexelCentres);
    glFinish(); // what the other context reads must be there
    // Others who read the texture may choose other filters for it, and a picture that nobody counts may change.
    const bool isShared = !framebuffer.isCounted() || (isScaled && framebuffer->framebufferReferenceCount() > 1);
    const auto frame =
        std::make_shared<TakenFrame>(TakenFrame{std::move(framebuffer), {0, size, m_inputRotation}, *time});
    frame->source.texture = frame->framebuffer->texture();
    const auto write = [this, frame] {
        writeFrame(*frame);
        leaveRoom();
    };
    if (isShared)
        runSynchronouslyOnContextQueue(*m_movieWriterContext, write);
    else
        runOnWriterQueue(write);
}

/// On the writer's queue.
void GPUImageMovieWriter::writeFrame(TakenFrame& frame)
{
    if (!m_isRecording)
        return;
    if (isToBeDropped(m_video))
        return logWarning("1: Had to drop a video frame: " + timeText(frame.time));
    const Result<std::shared_ptr<CVPixelBuffer>> pixels = m_readback->read(frame.source);
    if (!pixels)
        return fail(pixels.error());
    {
        const FramebufferHold done = std::move(frame.framebuffer); // given back before the encoder is waited for
    }
    CMSampleBuffer sample;
    sample.presentationTime = frame.time;
    sample.imageBuffer = *pixels;
    append(*m_video.input, sample, {"2: Had to drop a video frame: ", "Problem appending pixel buffer at time: "});
}

/// On the writer's queue, or on the thread of whoever brings sound and may wait.
void GPUImageMovieWriter::append(AVAssetWriterInput& input, const CMSampleBuffer& sample, const AppendTexts& texts)
{
    const auto isWriting = [this] { return m_assetWriter->status() == AVAssetWriterStatus::Writing; };
    while (!input.isReadyForMoreMediaData() && !m_encodingLiveVideo && !input.isFinished() && m_isRecording &&
           isWriting())
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
