#include "app/LiveMovie.h"

#include "app/LiveFrames.h"
#include "gpu/core/GPUImageOutput.h"
#include "gpu/endpoints/GPUImageMovieWriter.h"
#include "platform/base/DispatchQueue.h"
#include "platform/media/CMSampleBuffer.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <mutex>
#include <utility>

namespace lamina {

namespace {

constexpr std::int32_t kTimescale = 90'000;
/// Frames a second, where the movie doesn't tell.
constexpr double kUsualRate = 30;
constexpr const char* kNoPicture = QT_TRANSLATE_NOOP("Lamina", "there is no picture in it");

/// Of its own: a file that hangs holds up nobody else.
DispatchQueue& openingQueue()
{
    static auto* const queue = new DispatchQueue("live.openMovie");
    return *queue;
}

Result<std::shared_ptr<const AVURLAsset>> opened(const std::string& path)
{
    auto asset = AVURLAsset::make(path);
    if (asset && (*asset)->videoTracks().empty())
        return Error{path, kNoPicture};
    return asset;
}

} // namespace

/// The sound of one stretch on its way into a recording, at the times of the recording.
class LiveMovieSound : public GPUImageAudioEncodingTarget {
public:
    LiveMovieSound(std::shared_ptr<GPUImageAudioEncodingTarget> target, const CMTime& offset)
        : m_target(std::move(target))
        , m_offset(offset)
    {
    }
    bool hasAudioTrack() const override { return m_target->hasAudioTrack(); }
    void setHasAudioTrack(bool hasAudioTrack) override { m_target->setHasAudioTrack(hasAudioTrack); }
    bool shouldPassthroughAudio() const override { return false; }
    void setShouldInvalidateAudioSampleWhenDone(bool shouldInvalidate) override
    {
        m_target->setShouldInvalidateAudioSampleWhenDone(shouldInvalidate);
    }
    void processAudioBuffer(const CMSampleBuffer& audioBuffer) override
    {
        const CMSampleBuffer moved = GPUImageMovieWriter::adjustTime(audioBuffer, -m_offset);
        {
            const std::scoped_lock lock(m_mutex);
            if (m_closed)
                return;
            const auto& sound = moved.audio;
            m_end =
                moved.presentationTime +
                (sound && sound->sampleRate > 0 ? CMTime::make(sound->sampleCount(), sound->sampleRate) : kCMTimeZero);
        }
        m_target->processAudioBuffer(moved);
    }
    /// Nothing comes any more; where the sound ends, invalid without any.
    CMTime close()
    {
        const std::scoped_lock lock(m_mutex);
        m_closed = true;
        return m_end;
    }

private:
    std::shared_ptr<GPUImageAudioEncodingTarget> m_target;
    const CMTime m_offset;
    std::mutex m_mutex;
    CMTime m_end;
    bool m_closed = false;
};

/// Brings the end of one stretch to the main thread.
class LiveMovie::Ending : public GPUImageMovieDelegate {
public:
    Ending(std::weak_ptr<LiveMovie> movie, const GPUImageMovie* pass)
        : m_movie(std::move(movie))
        , m_pass(pass)
    {
    }
    void didCompletePlayingMovie() override { tell(std::nullopt); }
    void didFailPlayingMovie(const Error& error) override { tell(error); }

private:
    void tell(const std::optional<Error>& error)
    {
        DispatchQueue::main().async([movie = m_movie, pass = m_pass, error] {
            if (const auto self = movie.lock())
                self->ended(pass, error);
        });
    }

    std::weak_ptr<LiveMovie> m_movie;
    const GPUImageMovie* m_pass;
};

void LiveMovie::open(const std::string& path,
                     std::function<void(const Result<std::shared_ptr<const AVURLAsset>>&)> done)
{
    openingQueue().async([path, done = std::move(done), expected = DispatchQueue::main().expectWork()] {
        DispatchQueue::main().async([asset = opened(path), done, expected] { done(asset); });
    });
}

LiveMovie::LiveMovie(std::shared_ptr<LiveFrames> frames, std::shared_ptr<const AVURLAsset> asset)
    : LiveSource(std::move(frames))
    , m_asset(std::move(asset))
{
}

LiveMovie::~LiveMovie()
{
    end();
    frames().setTimeOffset(kCMTimeZero);
}

Outcome LiveMovie::start()
{
    if (!m_pass)
        begin(m_position);
    return success();
}

void LiveMovie::stop()
{
    if (!m_pass)
        return;
    m_position = reached();
    end();
}

/// Of the last frame of the stretch; where it begins, as long as none has come.
CMTime LiveMovie::reached() const
{
    return m_pass && !frames().isExpecting() ? frames().time() : m_position;
}

/// A moment before the end there may be no frame any more.
void LiveMovie::seek(double seconds)
{
    constexpr double kLast = 0.1;
    const double most = std::max(0.0, duration() - kLast);
    end();
    begin(CMTime::makeWithSeconds(std::clamp(std::isfinite(seconds) ? seconds : 0, 0.0, most), kTimescale));
}

double LiveMovie::position() const
{
    return reached().seconds();
}

void LiveMovie::begin(const CMTime& from)
{
    m_position = from;
    m_pass = std::make_shared<GPUImageMovie>(m_asset);
    m_pass->setPlayAtActualSpeed(true);
    m_pass->setTimeRange({from, kCMTimePositiveInfinity});
    m_ending = std::make_shared<Ending>(std::static_pointer_cast<LiveMovie>(shared_from_this()), m_pass.get());
    m_pass->setDelegate(m_ending);
    if (m_recorder) {
        m_offset = m_recordedEnd - from;
        if (hasSound())
            m_sound = std::make_shared<LiveMovieSound>(m_recorder, m_offset);
        m_pass->setAudioEncodingTarget(m_sound);
    }
    frames().setTimeOffset(m_recorder ? m_offset : kCMTimeZero);
    frames().expectFirst();
    m_pass->addTarget(sharedFrames());
    m_pass->startProcessing();
}

void LiveMovie::end()
{
    const auto pass = std::exchange(m_pass, nullptr);
    if (!pass)
        return;
    pass->setDelegate(nullptr);
    pass->cancelProcessing();
    pass->removeAllTargets();
    const CMTime soundEnd = m_sound ? std::exchange(m_sound, nullptr)->close() : CMTime();
    if (!m_recorder || frames().isExpecting())
        return;
    const double rate = m_asset->videoTracks().front().nominalFrameRate;
    const CMTime frame = CMTime::makeWithSeconds(1 / (rate > 0 ? rate : kUsualRate), kTimescale);
    m_recordedEnd = frames().time() + m_offset + frame;
    if (soundEnd.isNumeric())
        m_recordedEnd = std::max(m_recordedEnd, soundEnd);
}

/// The next stretch follows. One without a frame has none behind it either, unless it began in the middle.
void LiveMovie::ended(const GPUImageMovie* pass, const std::optional<Error>& error)
{
    if (pass != m_pass.get())
        return;
    const bool empty = frames().isExpecting();
    const bool whole = m_position == kCMTimeZero;
    end();
    m_position = kCMTimeZero;
    if (error)
        tellEnd(*error);
    else if (empty && whole)
        tellEnd({path(), kNoPicture});
    else
        begin(kCMTimeZero);
}

/// Sound comes from stretches that begin with a recorder.
void LiveMovie::setRecorder(std::shared_ptr<GPUImageAudioEncodingTarget> recorder)
{
    if (m_sound)
        m_sound->close();
    m_recorder = std::move(recorder);
    m_recordedEnd = kCMTimeZero;
    if (!m_recorder || !m_pass)
        return;
    m_position = reached();
    end();
    m_recordedEnd = kCMTimeZero;
    begin(m_position);
}

} // namespace lamina
