#include "gpu/core/GPUImageContext.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "gpu/endpoints/GPUImageMovieWriter.h"

#include <utility>

// Reading and writing in lockstep: each input asks its callback for the next piece whenever it is ready for one.

namespace lamina {

void GPUImageMovieWriter::setVideoInputReadyCallback(InputReadyCallback callback)
{
    exchangeGuarded(m_video.readyCallback, callback);
    tellPace();
}

void GPUImageMovieWriter::setAudioInputReadyCallback(InputReadyCallback callback)
{
    exchangeGuarded(m_audio.readyCallback, callback);
    tellPace();
}

void GPUImageMovieWriter::enableSynchronizationCallbacks()
{
    if (!m_assetWriter)
        return;
    if (isPulled(m_video) || isPulled(m_audio))
        runSynchronouslyOnContextQueue(*m_movieWriterContext, [this] { startWriting(); });
    pullFor(m_video, "com.vx.GPUImage.videoReadingQueue");
    pullFor(m_audio, "com.vx.GPUImage.audioReadingQueue");
}

void GPUImageMovieWriter::pullFor(Track& track, const char* queueLabel)
{
    if (!isPulled(track) || !track.input)
        return;
    if (!track.queue)
        track.queue = std::make_shared<DispatchQueue>(queueLabel);
    // The queue lives as long as it may be asked to run the block.
    track.input->requestMediaDataWhenReady(*track.queue, [weak = weak_from_this(), &track, queue = track.queue] {
        if (const auto self = weak.lock())
            self->pull(track);
    });
}

/// On the track's queue. While nothing is taken it is called again and again.
void GPUImageMovieWriter::pull(Track& track)
{
    while (m_isRecording && !paused() && track.input->isReadyForMoreMediaData()) {
        const InputReadyCallback nextPiece = guarded(track.readyCallback);
        if (nextPiece && nextPiece())
            continue;
        // Behind the frames that are on their way.
        return runOnWriterQueue([this, &track] { markAsFinished(track); });
    }
    // No piece may be on its way that would find it out.
    if (m_isRecording && m_assetWriter->status() == AVAssetWriterStatus::Failed)
        fail(m_assetWriter->error().value_or(Error{m_path, "writing has failed"}));
}

} // namespace lamina
