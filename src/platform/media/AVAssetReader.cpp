#include "platform/media/AVAssetReader.h"

#include "platform/base/Causes.h"
#include "platform/media/Clip.h"
#include "platform/media/FrameLayout_p.h"
#include "platform/media/MediaModule_p.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>
#include <utility>

namespace lamina {

namespace {

/// What a reader and its outputs, which may outlive it, share.
struct ReadingState {
    explicit ReadingState(std::shared_ptr<const AVURLAsset> movie)
        : asset(std::move(movie))
    {
    }

    const std::shared_ptr<const AVURLAsset> asset;
    std::mutex mutex; ///< of all below, and of the outputs' queues
    AVAssetReaderStatus status = AVAssetReaderStatus::Unknown;
    std::optional<Error> error;
    std::size_t unfinished = 0; ///< outputs that have more to give
    std::atomic<bool> cancelled = false;
};

/// One track, read ahead on a thread of its own.
class TrackOutput final : public AVAssetReaderOutput {
public:
    TrackOutput(std::shared_ptr<ReadingState> state, const TrackRequest& request)
        : m_state(std::move(state))
        , m_request(request)
    {
    }
    TrackOutput(const TrackOutput&) = delete;
    TrackOutput& operator=(const TrackOutput&) = delete;

    ~TrackOutput() override
    {
        cancel();
        if (m_thread.joinable())
            m_thread.join();
    }

    AVTrackMediaType mediaType() const override
    {
        return m_request.content == TrackRequest::Content::Pictures ? AVTrackMediaType::Video : AVTrackMediaType::Audio;
    }

    /// Finds the way in; nothing is read ahead yet.
    Outcome open(const CMTimeRange& range)
    {
        const Result<const MediaModule*> module = mediaModule();
        if (!module)
            return module.error();
        const ClipLimits limits;
        m_request.range = range;
        Result<std::unique_ptr<TrackReading>> reading = (*module)->readTrack(
            {m_state->asset->descriptor(), limits.memoryLimit, {&m_cancelled, limits.seconds}}, m_request);
        if (!reading)
            return reading.error();
        m_reading = std::move(*reading);
        return success();
    }

    Outcome start()
    {
        try {
            m_thread = std::thread([this] { readAhead(); });
        } catch (const std::system_error&) {
            return Error{{}, "there are too many threads"};
        }
        return success();
    }

    void cancel()
    {
        m_cancelled.store(true);
        std::deque<CMSampleBuffer> dropped;
        const std::lock_guard lock(m_state->mutex); // whoever looked before, and is about to wait, waits by now
        dropped.swap(m_queue);
        m_changed.notify_all();
    }

    std::optional<CMSampleBuffer> copyNextSampleBuffer() override
    {
        std::unique_lock lock(m_state->mutex);
        m_changed.wait(lock, [this] { return !m_queue.empty() || m_ended || !isReading(); });
        if (!isReading())
            return std::nullopt;
        if (m_queue.empty()) {
            finish();
            return std::nullopt;
        }
        CMSampleBuffer sample = std::move(m_queue.front());
        m_queue.pop_front();
        lock.unlock();
        m_changed.notify_all();
        return sample;
    }

private:
    static constexpr std::size_t kMostFrames = 4;
    static constexpr double kMostSound = 0.5;       ///< seconds
    static constexpr std::size_t kMostPieces = 256; ///< of sound, whatever their times say
    /// Of the pixels that wait, as soon as they are more than a frame.
    static constexpr std::size_t kMostBytes = std::size_t{24} << 20;

    bool isReading() const { return m_state->status == AVAssetReaderStatus::Reading && !m_cancelled.load(); }

    /// The queue was given out; with the mutex held.
    void finish()
    {
        if (m_finished)
            return;
        m_finished = true;
        if (m_failure && !m_state->error)
            m_state->error = Error{m_state->asset->path(), m_failure->cause};
        // A failure is told once the other tracks have given what they have, too.
        if (--m_state->unfinished == 0)
            m_state->status = m_state->error ? AVAssetReaderStatus::Failed : AVAssetReaderStatus::Completed;
    }

    bool isFull() const
    {
        if (mediaType() == AVTrackMediaType::Audio)
            return m_queue.size() >= kMostPieces ||
                   (!m_queue.empty() &&
                    !((m_queue.back().presentationTime - m_queue.front().presentationTime).seconds() <= kMostSound));
        return m_queue.size() >= kMostFrames ||
               (!m_queue.empty() && (m_queue.size() + 1) * bytesOf(m_queue.back().imageBuffer) > kMostBytes);
    }

    void readAhead()
    {
        bool more = true;
        while (more) {
            {
                std::unique_lock lock(m_state->mutex);
                m_changed.wait(lock, [this] { return !isFull() || m_cancelled.load(); });
            }
            more = !m_cancelled.load() && readOne();
        }
        m_reading.reset();
    }

    bool readOne()
    {
        Result<CMSampleBuffer> piece = readPiece();
        const std::lock_guard lock(m_state->mutex);
        const bool more = piece && piece->isValid();
        if (more)
            m_queue.push_back(std::move(*piece));
        else if (!piece)
            m_failure = piece.error();
        m_ended = !more;
        m_changed.notify_all();
        return more;
    }

    Result<CMSampleBuffer> readPiece()
    {
        try {
            return m_reading->next();
        } catch (const std::bad_alloc&) {
            return Error{{}, cause::kNoMemory};
        }
    }

    const std::shared_ptr<ReadingState> m_state;
    TrackRequest m_request;
    std::atomic<bool> m_cancelled = false;
    std::unique_ptr<TrackReading> m_reading;
    std::condition_variable m_changed;
    std::deque<CMSampleBuffer> m_queue;
    bool m_ended = false;    ///< nothing comes behind the queue
    bool m_finished = false; ///< and it was given out
    std::optional<Error> m_failure;
    std::thread m_thread;
};

class AssetReader final : public AVAssetReader {
public:
    explicit AssetReader(std::shared_ptr<const AVURLAsset> asset)
        : m_state(std::make_shared<ReadingState>(std::move(asset)))
    {
    }
    ~AssetReader() override { cancelReading(); }
    AssetReader(const AssetReader&) = delete;
    AssetReader& operator=(const AssetReader&) = delete;

    std::shared_ptr<AVAssetReaderOutput> addVideoOutput(CVPixelFormat format) override
    {
        if (m_state->asset->videoTracks().empty())
            return nullptr;
        TrackRequest request = wanted(TrackRequest::Content::Pictures);
        request.format = format;
        request.size = m_state->asset->videoTracks().front().naturalSize;
        request.makeBuffer = CVPixelBuffer::make;
        return add(request);
    }

    std::shared_ptr<AVAssetReaderOutput> addAudioOutput(bool stored) override
    {
        if (m_state->asset->audioTracks().empty())
            return nullptr;
        return add(wanted(stored ? TrackRequest::Content::StoredSound : TrackRequest::Content::Sound));
    }

    const std::vector<std::shared_ptr<AVAssetReaderOutput>>& outputs() const override { return m_outputs; }
    void setTimeRange(const CMTimeRange& range) override { m_range = range; }

    Outcome startReading() override
    {
        if (status() != AVAssetReaderStatus::Unknown)
            return Error{m_state->asset->path(), "the movie is being read already"};
        Outcome outcome = success();
        for (std::size_t i = 0; outcome && i < m_tracks.size(); ++i)
            outcome = m_tracks[i]->open(m_range);
        begin();
        for (std::size_t i = 0; outcome && i < m_tracks.size(); ++i)
            outcome = m_tracks[i]->start();
        return outcome ? outcome : fail(outcome.error());
    }

    AVAssetReaderStatus status() const override
    {
        const std::lock_guard lock(m_state->mutex);
        return m_state->status;
    }

    std::optional<Error> error() const override
    {
        const std::lock_guard lock(m_state->mutex);
        return m_state->status == AVAssetReaderStatus::Failed ? m_state->error : std::nullopt;
    }

    void cancelReading() override
    {
        {
            const std::lock_guard lock(m_state->mutex);
            if (m_state->status == AVAssetReaderStatus::Unknown || m_state->status == AVAssetReaderStatus::Reading)
                m_state->status = AVAssetReaderStatus::Cancelled;
        }
        for (const std::shared_ptr<TrackOutput>& track : m_tracks)
            track->cancel();
    }

private:
    TrackRequest wanted(TrackRequest::Content content) const
    {
        TrackRequest request;
        request.content = content;
        request.startTime = m_state->asset->startTime();
        return request;
    }

    std::shared_ptr<AVAssetReaderOutput> add(const TrackRequest& request)
    {
        m_tracks.push_back(std::make_shared<TrackOutput>(m_state, request));
        m_outputs.push_back(m_tracks.back());
        return m_tracks.back();
    }

    void begin()
    {
        const std::lock_guard lock(m_state->mutex);
        if (m_state->status != AVAssetReaderStatus::Unknown)
            return;
        m_state->unfinished = m_tracks.size();
        m_state->status = m_tracks.empty() ? AVAssetReaderStatus::Completed : AVAssetReaderStatus::Reading;
    }

    Outcome fail(const Error& error)
    {
        const Error told{m_state->asset->path(), error.cause};
        {
            const std::lock_guard lock(m_state->mutex);
            if (m_state->status == AVAssetReaderStatus::Reading) {
                m_state->status = AVAssetReaderStatus::Failed;
                m_state->error = told;
            }
        }
        for (const std::shared_ptr<TrackOutput>& track : m_tracks)
            track->cancel();
        return told;
    }

    const std::shared_ptr<ReadingState> m_state;
    CMTimeRange m_range;
    std::vector<std::shared_ptr<TrackOutput>> m_tracks;
    std::vector<std::shared_ptr<AVAssetReaderOutput>> m_outputs;
};

} // namespace

std::unique_ptr<AVAssetReader> AVAssetReader::make(std::shared_ptr<const AVURLAsset> asset)
{
    return std::make_unique<AssetReader>(std::move(asset));
}

} // namespace lamina
