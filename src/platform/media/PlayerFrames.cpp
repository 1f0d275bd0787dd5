#include "platform/media/PlayerFrames_p.h"

#include <cstddef>
#include <utility>

namespace lamina {

namespace {

constexpr std::size_t kFramesAhead = 3;

} // namespace

PlayerFrames::PlayerFrames(std::shared_ptr<const AVURLAsset> asset, CVPixelFormat format, std::function<void()> arrived)
    : m_asset(std::move(asset))
    , m_format(format)
    , m_arrived(std::move(arrived))
{
}

PlayerFrames::~PlayerFrames()
{
    beginAnew();
}

/// What reads now finds itself out of date.
std::uint64_t PlayerFrames::beginAnew()
{
    std::shared_ptr<AVAssetReader> former;
    std::uint64_t start = 0;
    {
        const std::scoped_lock lock(m_mutex);
        start = ++m_start;
        m_frames.clear();
        m_isFinished = false;
        m_error.reset();
        former.swap(m_reader);
    }
    if (former)
        former->cancelReading();
    m_changed.notify_all();
    return start;
}

void PlayerFrames::readFrom(const CMTime& time)
{
    const std::uint64_t start = beginAnew();
    m_queue.async([this, start, time] { read(start, time); });
}

void PlayerFrames::read(std::uint64_t start, const CMTime& time)
{
    const std::shared_ptr<AVAssetReader> reader = AVAssetReader::make(m_asset);
    const std::shared_ptr<AVAssetReaderOutput> output = reader ? reader->addVideoOutput(m_format) : nullptr;
    if (!output) {
        finish(start, Error{m_asset->path(), "there is no picture in the movie"});
        return;
    }
    reader->setTimeRange({.start = time});
    {
        const std::scoped_lock lock(m_mutex);
        if (start != m_start)
            return;
        m_reader = reader;
    }
    if (const Outcome started = reader->startReading(); !started) {
        finish(start, started.error());
        return;
    }
    while (std::optional<CMSampleBuffer> frame = output->copyNextSampleBuffer())
        if (!put(start, std::move(*frame)))
            return;
    finish(start, reader->error());
}

/// Waits for room; false where the frame is of an earlier start.
bool PlayerFrames::put(std::uint64_t start, CMSampleBuffer frame)
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return m_frames.size() < kFramesAhead || start != m_start; });
    if (start != m_start)
        return false;
    const bool isFirst = m_frames.empty();
    m_frames.push_back(std::move(frame));
    lock.unlock();
    if (isFirst)
        m_arrived();
    return true;
}

void PlayerFrames::finish(std::uint64_t start, std::optional<Error> error)
{
    {
        const std::scoped_lock lock(m_mutex);
        if (start != m_start)
            return;
        m_isFinished = true;
        m_error = std::move(error);
    }
    m_arrived();
}

bool PlayerFrames::has(const CMTime& time) const
{
    const std::scoped_lock lock(m_mutex);
    return !m_frames.empty() && m_frames.front().presentationTime <= time;
}

std::optional<CMSampleBuffer> PlayerFrames::take(const CMTime& time)
{
    std::optional<CMSampleBuffer> frame;
    {
        const std::scoped_lock lock(m_mutex);
        while (!m_frames.empty() && m_frames.front().presentationTime <= time) {
            frame = std::move(m_frames.front());
            m_frames.pop_front();
        }
    }
    m_changed.notify_all();
    return frame;
}

bool PlayerFrames::isDrained() const
{
    const std::scoped_lock lock(m_mutex);
    return m_isFinished && m_frames.empty();
}

std::optional<Error> PlayerFrames::error() const
{
    const std::scoped_lock lock(m_mutex);
    return m_error;
}

} // namespace lamina
