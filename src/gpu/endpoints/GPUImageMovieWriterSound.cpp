#include "gpu/core/VideoProcessingQueue.h"
#include "gpu/endpoints/GPUImageMovieWriter.h"
#include "platform/base/Log.h"

#include <utility>

namespace lamina {

namespace {

/// Of numbers, as many as there are; of packets what is told.
CMTime durationOf(const CMSampleBuffer& sound)
{
    const bool isCounted = sound.audio && sound.audio->sampleRate > 0;
    return isCounted ? CMTime::make(sound.audio->sampleCount(), sound.audio->sampleRate) : sound.duration;
}

} // namespace

void GPUImageMovieWriter::setHasAudioTrack(bool hasAudioTrack, const std::optional<AVAudioSettings>& audioSettings)
{
    m_hasAudioTrack = hasAudioTrack;
    if (!hasAudioTrack || !m_assetWriter || m_audio.input)
        return;
    if (m_shouldPassthroughAudio)
        m_shouldPassthroughAudio = addPassthroughInput();
    if (!m_audio.input) {
        Result<std::shared_ptr<AVAssetWriterInput>> input =
            m_assetWriter->addAudioInput(audioSettings.value_or(AVAudioSettings{}));
        if (!input) {
            m_hasAudioTrack = false;
            return fail(input.error());
        }
        m_audio.input = std::move(*input);
    }
    m_audio.input->setExpectsMediaDataInRealTime(isLive());
}

bool GPUImageMovieWriter::addPassthroughInput()
{
    if (!m_passthroughAsset) {
        logWarning(m_path + ": there is no movie whose sound is passed on; it is encoded");
        return false;
    }
    Result<std::shared_ptr<AVAssetWriterInput>> input = m_assetWriter->addStoredAudioInput(*m_passthroughAsset);
    if (!input) {
        logWarning(input.error().message() + "; it is encoded");
        return false;
    }
    m_audio.input = std::move(*input);
    return true;
}

void GPUImageMovieWriter::processAudioBuffer(const CMSampleBuffer& audioBuffer)
{
    if (!m_isRecording || !m_hasAudioTrack || !m_audio.input || paused() || !audioBuffer.isValid())
        return;
    const CMTime time = audioBuffer.presentationTime;
    if (!time.isNumeric() || !startSession(time, m_audio))
        return;
    if (isToBeDropped(m_audio))
        return logWarning("1: Had to drop an audio frame: " + timeText(time));
    const std::optional<CMTime> offset =
        m_times.takeSound(time, durationOf(audioBuffer), audioBuffer.packet != nullptr);
    if (!offset)
        return;
    CMSampleBuffer sample = offset->value > 0 ? adjustTime(audioBuffer, *offset) : audioBuffer;
    if (const AudioProcessingCallback process = guarded(m_audioProcessingCallback); process && sample.audio) {
        sample.audio = std::make_shared<AudioBuffer>(*sample.audio); // others may read the same
        process(*sample.audio, sample.audio->sampleCount());
    }
    if (!isLive())
        return writeSound(sample);
    runOnWriterQueue([this, sample]() mutable { writeSound(sample); });
}

void GPUImageMovieWriter::writeSound(CMSampleBuffer& sample)
{
    append(*m_audio.input, sample, {"2: Had to drop an audio frame ", "Problem appending audio buffer at time: "});
    if (m_shouldInvalidateAudioSampleWhenDone)
        sample.invalidate();
}

CMSampleBuffer GPUImageMovieWriter::adjustTime(const CMSampleBuffer& sample, const CMTime& offset)
{
    CMSampleBuffer moved = sample;
    for (CMTime* time : {&moved.decodeTime, &moved.presentationTime}) {
        if (time->isNumeric())
            *time = *time - offset;
    }
    return moved;
}

void GPUImageMovieWriter::setAudioProcessingCallback(AudioProcessingCallback callback)
{
    exchangeGuarded(m_audioProcessingCallback, callback);
}

} // namespace lamina
