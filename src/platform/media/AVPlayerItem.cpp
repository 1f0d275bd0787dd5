#include "platform/media/AVPlayerItem.h"

#include "platform/base/Clock.h"
#include "platform/media/CMSampleBuffer.h"
#include "platform/media/PlayerFrames_p.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace lamina {

namespace {

constexpr std::int32_t kTimescale = 90000; ///< that of most streams' frames

CMTime mediaTime(double seconds)
{
    return CMTime::makeWithSeconds(seconds, kTimescale);
}

} // namespace

void AVPlayerItem::ItemClock::anchorAt(double itemTime)
{
    m_hostTime = Clock::shared()->now();
    m_itemTime = itemTime;
}

double AVPlayerItem::ItemClock::timeAt(double hostTime) const
{
    return m_itemTime + m_rate * (hostTime - m_hostTime);
}

void AVPlayerItem::ItemClock::setRate(double rate)
{
    const std::scoped_lock lock(m_mutex);
    anchorAt(timeAt(Clock::shared()->now()));
    m_rate = rate > 0 ? rate : 0;
}

double AVPlayerItem::ItemClock::rate() const
{
    const std::scoped_lock lock(m_mutex);
    return m_rate;
}

void AVPlayerItem::ItemClock::setTime(double itemTime)
{
    const std::scoped_lock lock(m_mutex);
    anchorAt(itemTime);
}

double AVPlayerItem::ItemClock::itemTime(double hostTime) const
{
    const std::scoped_lock lock(m_mutex);
    return timeAt(hostTime);
}

AVPlayerItem::AVPlayerItem(std::shared_ptr<const AVURLAsset> asset)
    : m_asset(std::move(asset))
{
}

void AVPlayerItem::setRate(double rate)
{
    m_clock->setRate(rate);
    for (const auto& output : outputs())
        output->notify();
}

double AVPlayerItem::rate() const
{
    return m_clock->rate();
}

void AVPlayerItem::seekToTime(const CMTime& time)
{
    m_clock->setTime(time.isNumeric() ? time.seconds() : 0);
    for (const auto& output : outputs())
        output->readFrom(currentTime());
}

CMTime AVPlayerItem::currentTime() const
{
    const double now = m_clock->itemTime(Clock::shared()->now());
    const double end = duration().seconds();
    return mediaTime(std::max(0.0, end > 0 ? std::min(now, end) : now));
}

bool AVPlayerItem::hasPlayedToEnd() const
{
    return m_clock->itemTime(Clock::shared()->now()) >= duration().seconds();
}

std::vector<std::shared_ptr<AVPlayerItemVideoOutput>> AVPlayerItem::outputs() const
{
    const std::scoped_lock lock(m_mutex);
    return m_outputs;
}

void AVPlayerItem::addOutput(const std::shared_ptr<AVPlayerItemVideoOutput>& output)
{
    {
        const std::scoped_lock lock(m_mutex);
        m_outputs.push_back(output);
    }
    output->attach(*this);
    output->readFrom(currentTime());
}

void AVPlayerItem::removeOutput(const std::shared_ptr<AVPlayerItemVideoOutput>& output)
{
    {
        const std::scoped_lock lock(m_mutex);
        if (std::erase(m_outputs, output) == 0)
            return;
    }
    output->detach();
}

AVPlayerItemVideoOutput::AVPlayerItemVideoOutput(CVPixelFormat format)
    : m_format(format)
{
}

AVPlayerItemVideoOutput::~AVPlayerItemVideoOutput() = default;

void AVPlayerItemVideoOutput::setDelegate(const std::weak_ptr<AVPlayerItemOutputPullDelegate>& delegate,
                                          DispatchQueue& queue)
{
    const std::scoped_lock lock(m_mutex);
    m_delegate = delegate;
    m_delegateQueue = &queue;
}

void AVPlayerItemVideoOutput::requestNotificationOfMediaDataChangeWithAdvanceInterval(double)
{
    const std::scoped_lock lock(m_mutex);
    m_wantsNotification = true;
}

void AVPlayerItemVideoOutput::notify()
{
    const std::scoped_lock lock(m_mutex);
    if (!m_wantsNotification || !m_delegateQueue)
        return;
    m_delegateQueue->async([weakSelf = weak_from_this(), weakDelegate = m_delegate] {
        const auto self = weakSelf.lock();
        const auto delegate = weakDelegate.lock();
        if (self && delegate)
            delegate->outputMediaDataWillChange(*self);
    });
}

void AVPlayerItemVideoOutput::attach(const AVPlayerItem& item)
{
    detach();
    auto frames = std::make_shared<PlayerFrames>(item.asset(), m_format, [this] { notify(); });
    const std::scoped_lock lock(m_mutex);
    m_clock = item.m_clock;
    m_frames = std::move(frames);
}

void AVPlayerItemVideoOutput::detach()
{
    std::shared_ptr<PlayerFrames> former; // ends without the lock, which its reading may want
    const std::scoped_lock lock(m_mutex);
    former.swap(m_frames);
    m_clock.reset();
}

std::shared_ptr<PlayerFrames> AVPlayerItemVideoOutput::frames() const
{
    const std::scoped_lock lock(m_mutex);
    return m_frames;
}

void AVPlayerItemVideoOutput::readFrom(const CMTime& itemTime)
{
    if (const auto frames = this->frames())
        frames->readFrom(itemTime);
}

CMTime AVPlayerItemVideoOutput::itemTimeForHostTime(double hostTime) const
{
    const std::scoped_lock lock(m_mutex);
    return m_clock ? mediaTime(m_clock->itemTime(hostTime)) : kCMTimeInvalid;
}

bool AVPlayerItemVideoOutput::hasNewPixelBufferForItemTime(const CMTime& itemTime) const
{
    const auto frames = this->frames();
    return frames && frames->has(itemTime);
}

std::shared_ptr<CVPixelBuffer> AVPlayerItemVideoOutput::copyPixelBufferForItemTime(const CMTime& itemTime,
                                                                                   CMTime* displayTime)
{
    const auto frames = this->frames();
    const std::optional<CMSampleBuffer> frame = frames ? frames->take(itemTime) : std::nullopt;
    if (frame && displayTime)
        *displayTime = frame->presentationTime;
    return frame ? frame->imageBuffer : nullptr;
}

bool AVPlayerItemVideoOutput::isDrained() const
{
    const auto frames = this->frames();
    return frames && frames->isDrained();
}

std::optional<Error> AVPlayerItemVideoOutput::error() const
{
    const auto frames = this->frames();
    return frames ? frames->error() : std::nullopt;
}

} // namespace lamina
