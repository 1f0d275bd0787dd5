#include "gpu/core/VideoProcessingQueue.h"
#include "gpu/endpoints/GPUImageMovie.h"
#include "gpu/endpoints/MoviePlayerLink.h"
#include "platform/base/DispatchQueue.h"
#include "platform/media/AVPlayerItem.h"

#include <utility>

// How a movie is read: by itself, or by a writer that pulls.

namespace lamina {

void GPUImageMovie::readPass(const StopFlag& stop)
{
    {
        const std::scoped_lock lock(m_mutex);
        m_passStop = stop;
        m_endIsUnderWay = false;
        m_processingFrameTime = m_processedAudioTime = m_timeRange.start;
    }
    const Outcome prepared = prepareToRead(*stop);
    if (*stop)
        return; // it was ended before it began
    if (!prepared) {
        failToStart(prepared.error());
        return;
    }
    const std::shared_ptr<AVAssetReader> reader = createAssetReader();
    if (!reader) {
        failToStart({path(), "there is no movie to read"});
        return;
    }
    reader->setTimeRange(m_timeRange);
    {
        const std::scoped_lock lock(m_mutex);
        m_reader = reader;
    }
    m_videoEncodingIsFinished = !output(AVTrackMediaType::Video);
    m_audioEncodingIsFinished = !output(AVTrackMediaType::Audio);
    if (!m_audioEncodingIsFinished && audioEncodingTarget())
        audioEncodingTarget()->setShouldInvalidateAudioSampleWhenDone(true);
    m_pacing.restart();
    if (const Outcome started = reader->startReading(); !started && !*stop) {
        failToStart(started.error());
        return;
    }
    if (*stop)
        reader->cancelReading(); // who ended it may have seen no reader yet
    else if (m_synchronizedMovieWriter)
        pullInto(*m_synchronizedMovieWriter, stop);
    else
        readUntilEnd();
}

void GPUImageMovie::pullInto(GPUImageSynchronizedWriter& writer, const StopFlag& stop)
{
    // The writer is held here: it must not hold the movie in turn.
    const auto weak = std::weak_ptr<GPUImageMovie>(std::static_pointer_cast<GPUImageMovie>(shared_from_this()));
    writer.setVideoInputReadyCallback([weak, stop, video = output(AVTrackMediaType::Video)] {
        const std::shared_ptr<GPUImageMovie> movie = weak.lock();
        return movie && !*stop && movie->readNextVideoFrameFromOutput(video);
    });
    writer.setAudioInputReadyCallback([weak, stop, audio = output(AVTrackMediaType::Audio)] {
        const std::shared_ptr<GPUImageMovie> movie = weak.lock();
        return movie && !*stop && movie->readNextAudioSampleFromOutput(audio);
    });
    writer.enableSynchronizationCallbacks();
}

void GPUImageMovie::readUntilEnd()
{
    const std::shared_ptr<AVAssetReader> reader = this->reader();
    const std::shared_ptr<AVAssetReaderOutput> video = output(AVTrackMediaType::Video);
    const std::shared_ptr<AVAssetReaderOutput> audio = output(AVTrackMediaType::Audio);
    bool hasFrames = video != nullptr;
    bool hasSound = audio != nullptr;
    bool hasAnything = false;
    while ((hasFrames || hasSound) && !isStopped()) {
        hasFrames = hasFrames && readNextVideoFrameFromOutput(video);
        // Sound keeps up with the picture: its pieces may be shorter than a frame lasts.
        do
            hasSound = hasSound && readNextAudioSampleFromOutput(audio);
        while (hasSound && hasFrames && isSoundBehind());
        hasAnything = hasAnything || hasFrames || hasSound;
    }
    if (!hasAnything)
        m_keepLooping = false; // or it would go round without a rest
    if (!isStopped())
        finishPass(*reader);
}

bool GPUImageMovie::isSoundBehind() const
{
    const std::scoped_lock lock(m_mutex);
    return m_processedAudioTime < m_processingFrameTime;
}

void GPUImageMovie::finishPass(AVAssetReader& reader)
{
    if (reader.status() == AVAssetReaderStatus::Completed)
        reader.cancelReading();
    if (!m_keepLooping || reader.status() == AVAssetReaderStatus::Failed) {
        endAfterReading();
        return;
    }
    StopFlag stop;
    {
        const std::scoped_lock lock(m_mutex);
        stop = m_passStop;
        m_isProcessing = false;
    }
    const auto self = std::static_pointer_cast<GPUImageMovie>(shared_from_this());
    DispatchQueue::main().async([self, stop] { self->submitPass(self->beginPass(stop)); });
}

bool GPUImageMovie::readNextVideoFrameFromOutput(const std::shared_ptr<AVAssetReaderOutput>& output)
{
    std::optional<CMSampleBuffer> sample;
    if (output && !m_videoEncodingIsFinished && !isStopped())
        sample = output->copyNextSampleBuffer();
    if (!sample) {
        finishStream(m_videoEncodingIsFinished);
        return false;
    }
    if (m_playAtActualSpeed)
        m_pacing.waitUntilDue(sample->presentationTime, [this] { return isStopped(); });
    const bool isShown = valueFromVideoProcessingQueue([&] { return isStopped() || pushFrame(*sample); });
    sample->invalidate();
    if (!isShown) { // with frames missing nothing that is made of it would be whole
        fail({path(), "there is no memory for a frame"});
        endProcessing();
    }
    return !isStopped();
}

bool GPUImageMovie::readNextAudioSampleFromOutput(const std::shared_ptr<AVAssetReaderOutput>& output)
{
    std::optional<CMSampleBuffer> sample;
    if (output && !m_audioEncodingIsFinished && !isStopped())
        sample = output->copyNextSampleBuffer();
    if (!sample) {
        finishStream(m_audioEncodingIsFinished);
        return false;
    }
    if (const auto& target = audioEncodingTarget())
        target->processAudioBuffer(*sample);
    const std::scoped_lock lock(m_mutex);
    m_processedAudioTime = sample->presentationTime;
    return !(m_passStop && *m_passStop);
}

/// Each stream is finished by who reads it, so that the end comes behind the last piece of both.
void GPUImageMovie::finishStream(std::atomic<bool>& isFinished)
{
    if (m_keepLooping)
        return;
    isFinished = true;
    if (m_audioEncodingIsFinished && m_videoEncodingIsFinished)
        endAfterReading();
}

void GPUImageMovie::processPlayerItem()
{
    if (!beginPass())
        return;
    const auto weak = std::weak_ptr<GPUImageMovie>(std::static_pointer_cast<GPUImageMovie>(shared_from_this()));
    const auto link = std::make_shared<MoviePlayerLink>(
        m_playerItem, wantedFormat(*m_playerItem->asset()),
        MoviePlayerLink::Handlers{.frame =
                                      [weak](const CMSampleBuffer& frame) {
                                          if (const std::shared_ptr<GPUImageMovie> movie = weak.lock())
                                              movie->processMovieFrame(frame);
                                      },
                                  .end =
                                      [weak](const std::optional<Error>& error) {
                                          if (const std::shared_ptr<GPUImageMovie> movie = weak.lock())
                                              movie->finishPlayerItem(error);
                                      }});
    {
        const std::scoped_lock lock(m_mutex);
        m_asset = m_playerItem->asset();
        m_playerLink = link;
    }
    link->start();
}

void GPUImageMovie::finishPlayerItem(const std::optional<Error>& error)
{
    if (!error && m_keepLooping) {
        m_playerItem->seekToTime(kCMTimeZero);
        return;
    }
    if (error)
        fail(*error);
    endProcessing();
}

void GPUImageMovie::endAfterReading()
{
    if (isStopped() || m_endIsUnderWay.exchange(true))
        return;
    const std::shared_ptr<AVAssetReader> reader = this->reader();
    if (reader && reader->status() == AVAssetReaderStatus::Failed && !m_hasEnded)
        fail(reader->error().value_or(Error{path(), "reading has failed"}));
    endProcessing();
}

} // namespace lamina
