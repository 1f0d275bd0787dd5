#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"
#include "platform/base/Causes.h"
#include "platform/base/Result.h"
#include "platform/media/AVAsset.h"
#include "platform/media/AVAssetReader.h"
#include "platform/media/AVComposition.h"
#include "platform/media/CMSampleBuffer.h"
#include "platform/media/CVPixelBuffer.h"
#include "platform/media/FrameLayout_p.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

namespace lamina {

namespace {

/// What is read of one clip.
struct Segment {
    std::shared_ptr<const AVURLAsset> asset;
    CMTimeRange range; ///< of the asset
    CMTime begin;      ///< in the composition
    CMTime end;
    float volume = 1;

    CMTime inComposition(const CMTime& time) const { return begin + (time - range.start); }
};

/// What the reader and its outputs, which may outlive it, share.
struct CompositionState {
    std::mutex mutex;
    AVAssetReaderStatus status = AVAssetReaderStatus::Unknown;
    std::optional<Error> error;
    std::size_t unfinished = 0; ///< outputs that have more to give

    bool isReading()
    {
        const std::scoped_lock lock(mutex);
        return status == AVAssetReaderStatus::Reading;
    }
    /// A failure is told once the other outputs have given what they have, too.
    void finishOutput(std::optional<Error> cause)
    {
        const std::scoped_lock lock(mutex);
        if (cause && !error)
            error = std::move(cause);
        if (--unfinished == 0 && status == AVAssetReaderStatus::Reading)
            status = error ? AVAssetReaderStatus::Failed : AVAssetReaderStatus::Completed;
    }
};

/// One kind of track of all clips, one clip after another.
class CompositionOutput : public AVAssetReaderOutput {
public:
    explicit CompositionOutput(std::shared_ptr<CompositionState> state)
        : m_state(std::move(state))
    {
    }

    void setSegments(std::vector<Segment> segments) { m_segments = std::move(segments); }

    std::optional<CMSampleBuffer> copyNextSampleBuffer() override
    {
        while (m_state->isReading() && (m_output || openNext())) {
            if (std::optional<CMSampleBuffer> sample = m_output->copyNextSampleBuffer()) {
                if (adapt(*sample, m_segments[m_next - 1]))
                    return sample;
                continue; // nothing of it lies within the clip
            }
            const std::shared_ptr<AVAssetReader> reader = m_reader;
            m_output.reset();
            if (reader->status() == AVAssetReaderStatus::Failed)
                end(reader->error().value_or(Error{{}, "reading has failed"}));
        }
        return std::nullopt;
    }

    void cancel()
    {
        std::shared_ptr<AVAssetReader> reader;
        {
            const std::scoped_lock lock(m_state->mutex);
            reader = m_reader;
        }
        if (reader)
            reader->cancelReading();
    }

protected:
    virtual std::shared_ptr<AVAssetReaderOutput> addOutput(AVAssetReader& reader) const = 0;
    /// The clip's piece as the composition's; false where nothing of it is left.
    virtual bool adapt(CMSampleBuffer& sample, const Segment& segment) = 0;
    /// Gives nothing any more.
    void end(std::optional<Error> cause)
    {
        m_next = m_segments.size();
        m_output.reset();
        setReader(nullptr);
        if (!std::exchange(m_isFinished, true))
            m_state->finishOutput(std::move(cause));
    }

private:
    /// The next clip that has such a track. False where there is none any more, or reading has ended.
    bool openNext()
    {
        while (m_next < m_segments.size()) {
            const Segment& segment = m_segments[m_next++];
            const std::shared_ptr<AVAssetReader> reader = AVAssetReader::make(segment.asset);
            m_output = reader ? addOutput(*reader) : nullptr;
            if (!m_output)
                continue;
            reader->setTimeRange(segment.range);
            setReader(reader);
            if (const Outcome started = reader->startReading(); !started) {
                end(started.error());
                return false;
            }
            if (m_state->isReading())
                return true;
            reader->cancelReading(); // who cancelled may not have seen it yet
            return false;
        }
        end({});
        return false;
    }
    void setReader(std::shared_ptr<AVAssetReader> reader)
    {
        const std::scoped_lock lock(m_state->mutex);
        m_reader.swap(reader);
    }

    const std::shared_ptr<CompositionState> m_state;
    std::vector<Segment> m_segments;
    std::size_t m_next = 0;
    std::shared_ptr<AVAssetReader> m_reader;
    std::shared_ptr<AVAssetReaderOutput> m_output;
    bool m_isFinished = false;
};

class CompositionFrames final : public CompositionOutput {
public:
    CompositionFrames(std::shared_ptr<CompositionState> state, IntSize renderSize)
        : CompositionOutput(std::move(state))
        , m_renderSize(renderSize)
    {
    }
    AVTrackMediaType mediaType() const override { return AVTrackMediaType::Video; }

private:
    std::shared_ptr<AVAssetReaderOutput> addOutput(AVAssetReader& reader) const override
    {
        return reader.addVideoOutput(CVPixelFormat::BGRA);
    }
    bool adapt(CMSampleBuffer& sample, const Segment& segment) override
    {
        sample.presentationTime = std::max(segment.begin, segment.inComposition(sample.presentationTime));
        if (!(sample.presentationTime < segment.end) || !sample.imageBuffer)
            return false;
        const AVTrackTransform transform = segment.asset->videoTracks().front().preferredTransform;
        sample.imageBuffer = laidOut(sample.imageBuffer, transform, m_renderSize);
        if (!sample.imageBuffer)
            end(Error{segment.asset->path(), cause::kNoMemory});
        return sample.imageBuffer != nullptr;
    }

    const IntSize m_renderSize;
};

class CompositionSound final : public CompositionOutput {
public:
    using CompositionOutput::CompositionOutput;
    AVTrackMediaType mediaType() const override { return AVTrackMediaType::Audio; }

private:
    std::shared_ptr<AVAssetReaderOutput> addOutput(AVAssetReader& reader) const override
    {
        return reader.addAudioOutput(false);
    }
    bool adapt(CMSampleBuffer& sample, const Segment& segment) override
    {
        if (!sample.audio)
            return false;
        const AudioBuffer& whole = *sample.audio;
        const CMTime time = segment.inComposition(sample.presentationTime);
        const int first = momentsUntil(segment.begin, time, whole);
        const int last = momentsUntil(segment.end, time, whole);
        if (first >= last)
            return false;
        const auto channels = static_cast<std::ptrdiff_t>(whole.channels);
        auto part = std::make_shared<AudioBuffer>(AudioBuffer{
            .sampleRate = whole.sampleRate,
            .channels = whole.channels,
            .samples = {whole.samples.begin() + first * channels, whole.samples.begin() + last * channels}});
        for (float& value : part->samples)
            value *= segment.volume;
        sample.audio = std::move(part);
        sample.presentationTime = first == 0 ? time : time + CMTime::make(first, whole.sampleRate);
        sample.decodeTime = kCMTimeInvalid;
        sample.duration = CMTime::make(last - first, whole.sampleRate);
        return true;
    }
    /// How many moments of a piece that begins at `start` lie before `time`.
    static int momentsUntil(const CMTime& time, const CMTime& start, const AudioBuffer& piece)
    {
        const double moments = std::round((time - start).seconds() * piece.sampleRate);
        return static_cast<int>(std::clamp(moments, 0.0, double(piece.sampleCount())));
    }
};

class CompositionReader final : public AVAssetReader {
public:
    CompositionReader(const AVMutableComposition& composition, const AVMutableVideoComposition& video,
                      AVMutableAudioMix mix)
        : m_composition(composition)
        , m_audioMix(std::move(mix))
    {
        const IntSize size = video.renderSize == IntSize{} ? composition.naturalSize() : video.renderSize;
        const auto scaled = [&](int side) {
            return static_cast<int>(std::lround(std::clamp(side * video.renderScale, 0.0, kLongestSide)));
        };
        m_renderSize = {scaled(size.width), scaled(size.height)};
    }
    ~CompositionReader() override { cancelReading(); }

    std::shared_ptr<AVAssetReaderOutput> addVideoOutput(CVPixelFormat format) override
    {
        const bool hasPicture = !(m_composition.naturalSize() == IntSize{});
        if (format != CVPixelFormat::BGRA || !hasPicture)
            return nullptr;
        return add(std::make_shared<CompositionFrames>(m_state, m_renderSize));
    }
    std::shared_ptr<AVAssetReaderOutput> addAudioOutput(bool) override
    {
        const bool hasSound = std::ranges::any_of(
            m_composition.clips(), [](const AVCompositionClip& clip) { return !clip.asset->audioTracks().empty(); });
        return hasSound ? add(std::make_shared<CompositionSound>(m_state)) : nullptr;
    }
    const std::vector<std::shared_ptr<AVAssetReaderOutput>>& outputs() const override { return m_outputs; }
    void setTimeRange(const CMTimeRange& range) override { m_range = range; }

    Outcome startReading() override
    {
        const bool draws = std::ranges::any_of(
            m_outputs, [](const auto& output) { return output->mediaType() == AVTrackMediaType::Video; });
        if (draws && (m_renderSize.width <= 0 || m_renderSize.height <= 0))
            return Error{{}, "a composition can't be drawn at this size"};
        for (const auto& output : m_compositionOutputs)
            output->setSegments(segments());
        const std::scoped_lock lock(m_state->mutex);
        m_state->unfinished = m_outputs.size();
        m_state->status = m_outputs.empty() ? AVAssetReaderStatus::Completed : AVAssetReaderStatus::Reading;
        return success();
    }
    AVAssetReaderStatus status() const override
    {
        const std::scoped_lock lock(m_state->mutex);
        return m_state->status;
    }
    std::optional<Error> error() const override
    {
        const std::scoped_lock lock(m_state->mutex);
        return m_state->status == AVAssetReaderStatus::Failed ? m_state->error : std::nullopt;
    }
    void cancelReading() override
    {
        {
            const std::scoped_lock lock(m_state->mutex);
            if (m_state->status != AVAssetReaderStatus::Reading)
                return;
            m_state->status = AVAssetReaderStatus::Cancelled;
        }
        for (const auto& output : m_compositionOutputs)
            output->cancel();
    }

private:
    static constexpr double kLongestSide = 16384;

    template <class Output>
    std::shared_ptr<AVAssetReaderOutput> add(std::shared_ptr<Output> output)
    {
        m_compositionOutputs.push_back(output);
        m_outputs.push_back(output);
        return output;
    }

    /// What of the clips lies in the range.
    std::vector<Segment> segments() const
    {
        const CMTime end = m_range.duration.isNumeric() ? m_range.start + m_range.duration : m_composition.duration();
        std::vector<Segment> found;
        for (std::size_t i = 0; i < m_composition.clips().size(); ++i) {
            const AVCompositionClip& clip = m_composition.clips()[i];
            const CMTime from = std::max(clip.start, m_range.start);
            const CMTime to = std::min(clip.start + clip.range.duration, end);
            if (from < to) {
                const CMTimeRange part{clip.range.start + (from - clip.start), to - from};
                found.push_back({clip.asset, part, from, to, m_audioMix.volume(i)});
            }
        }
        return found;
    }

    const AVMutableComposition m_composition;
    const AVMutableAudioMix m_audioMix;
    IntSize m_renderSize;
    CMTimeRange m_range;
    const std::shared_ptr<CompositionState> m_state = std::make_shared<CompositionState>();
    std::vector<std::shared_ptr<CompositionOutput>> m_compositionOutputs;
    std::vector<std::shared_ptr<AVAssetReaderOutput>> m_outputs;
};

} // namespace

std::unique_ptr<AVAssetReader> readerOfComposition(const AVMutableComposition& composition,
                                                   const AVMutableVideoComposition& videoComposition,
                                                   const AVMutableAudioMix& audioMix)
{
    return std::make_unique<CompositionReader>(composition, videoComposition, audioMix);
}

} // namespace lamina
