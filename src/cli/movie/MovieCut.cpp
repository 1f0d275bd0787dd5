#include "cli/movie/MovieCut.h"

#include "platform/base/CMTime.h"
#include "platform/base/Result.h"
#include "platform/media/CMSampleBuffer.h"
#include "platform/media/CVPixelBuffer.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace lamina {

namespace {

/// A frame that begins so little before or after a moment begins at it: who types a moment rounds it.
constexpr CMTime kNearly = CMTime::make(1, 1000);

CMTime endOf(const CMTimeRange& range)
{
    return range.duration.isNumeric() ? range.start + range.duration : kCMTimePositiveInfinity;
}

/// Cuts what comes out of an output.
class CutOutput : public AVAssetReaderOutput {
public:
    CutOutput(std::shared_ptr<AVAssetReaderOutput> output, const CMTimeRange& range)
        : m_output(std::move(output))
        , m_start(range.start)
        , m_end(endOf(range))
    {
    }

    AVTrackMediaType mediaType() const override { return m_output->mediaType(); }
    std::optional<CMSampleBuffer> copyNextSampleBuffer() override
    {
        return mediaType() == AVTrackMediaType::Video ? nextFrame() : nextSound();
    }

private:
    std::optional<CMSampleBuffer> nextFrame()
    {
        std::optional<CMSampleBuffer> next =
            m_next ? std::exchange(m_next, std::nullopt) : m_output->copyNextSampleBuffer();
        if (!m_hasBegun)
            next = firstFrame(std::move(next));
        while (next && next->presentationTime + kNearly >= m_end)
            next = m_output->copyNextSampleBuffer();
        return next;
    }

    /// The last one that has begun by the start, from there on; else the first after it.
    std::optional<CMSampleBuffer> firstFrame(std::optional<CMSampleBuffer> next)
    {
        std::optional<CMSampleBuffer> shown;
        for (; next && next->presentationTime <= m_start + kNearly; next = m_output->copyNextSampleBuffer())
            shown = std::move(next);
        m_hasBegun = true;
        if (!shown)
            return next;
        m_next = std::move(next);
        if (shown->duration.isNumeric())
            shown->duration = std::max(shown->presentationTime + shown->duration - m_start, kNearly);
        shown->presentationTime = m_start;
        return shown;
    }

    std::optional<CMSampleBuffer> nextSound()
    {
        std::optional<CMSampleBuffer> next;
        do
            next = m_output->copyNextSampleBuffer();
        while (next && next->audio && !cut(*next));
        return next;
    }

    /// Whether anything is left of it.
    bool cut(CMSampleBuffer& sound) const
    {
        const AudioBuffer& whole = *sound.audio;
        const CMTime length = CMTime::make(whole.sampleCount(), whole.sampleRate);
        const auto samplesUntil = [&](const CMTime& moment) {
            const CMTime before = std::clamp(moment - sound.presentationTime, kCMTimeZero, length);
            return static_cast<int>(std::ceil(before.seconds() * whole.sampleRate - kNearlyASample));
        };
        const int first = samplesUntil(m_start);
        const int last = samplesUntil(m_end);
        if (first == 0 && last == whole.sampleCount())
            return true;
        const auto part = std::make_shared<AudioBuffer>(AudioBuffer{whole.sampleRate, whole.channels, {}});
        if (first < last)
            part->samples.assign(whole.samples.begin() + std::ptrdiff_t{first} * whole.channels,
                                 whole.samples.begin() + std::ptrdiff_t{last} * whole.channels);
        sound.presentationTime = sound.presentationTime + CMTime::make(first, whole.sampleRate);
        sound.duration = CMTime::make(part->sampleCount(), whole.sampleRate);
        sound.audio = part;
        return first < last;
    }

    static constexpr double kNearlyASample = 1e-3;

    std::shared_ptr<AVAssetReaderOutput> m_output;
    CMTime m_start;
    CMTime m_end;
    std::optional<CMSampleBuffer> m_next; ///< was read to know where the first one ends
    bool m_hasBegun = false;
};

class CutReader : public AVAssetReader {
public:
    CutReader(std::unique_ptr<AVAssetReader> reader, const CMTimeRange& range)
        : m_reader(std::move(reader))
    {
        setTimeRange(range);
    }

    std::shared_ptr<AVAssetReaderOutput> addVideoOutput(CVPixelFormat format) override
    {
        return add(m_reader->addVideoOutput(format));
    }
    std::shared_ptr<AVAssetReaderOutput> addAudioOutput(bool stored) override
    {
        return add(m_reader->addAudioOutput(stored));
    }
    const std::vector<std::shared_ptr<AVAssetReaderOutput>>& outputs() const override { return m_outputs; }
    void setTimeRange(const CMTimeRange& range) override
    {
        m_range = range;
        m_reader->setTimeRange(range);
    }
    Outcome startReading() override { return m_reader->startReading(); }
    AVAssetReaderStatus status() const override { return m_reader->status(); }
    std::optional<Error> error() const override { return m_reader->error(); }
    void cancelReading() override { m_reader->cancelReading(); }

private:
    std::shared_ptr<AVAssetReaderOutput> add(std::shared_ptr<AVAssetReaderOutput> output)
    {
        if (!output)
            return nullptr;
        return m_outputs.emplace_back(std::make_shared<CutOutput>(std::move(output), m_range));
    }

    std::unique_ptr<AVAssetReader> m_reader;
    CMTimeRange m_range;
    std::vector<std::shared_ptr<AVAssetReaderOutput>> m_outputs;
};

} // namespace

bool isCut(const CMTimeRange& range)
{
    return range.start > kCMTimeZero || range.duration.isNumeric();
}

std::unique_ptr<AVAssetReader> makeCutReader(std::shared_ptr<const AVURLAsset> asset, const CMTimeRange& range)
{
    std::unique_ptr<AVAssetReader> reader = AVAssetReader::make(std::move(asset));
    return isCut(range) ? std::make_unique<CutReader>(std::move(reader), range) : std::move(reader);
}

} // namespace lamina
