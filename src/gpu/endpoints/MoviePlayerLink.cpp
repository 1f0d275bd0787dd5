#include "gpu/endpoints/MoviePlayerLink.h"

#include "gpu/core/GPUImageContext.h"
#include "platform/base/Clock.h"
#include "platform/media/CVPixelBuffer.h"

#include <utility>

namespace lamina {

namespace {

constexpr double kDisplayTurn = 1.0 / 60;
constexpr double kAdvanceInterval = 0.1;

} // namespace

MoviePlayerLink::MoviePlayerLink(std::shared_ptr<AVPlayerItem> item, CVPixelFormat format, Handlers handlers)
    : m_item(std::move(item))
    , m_output(std::make_shared<AVPlayerItemVideoOutput>(format))
    , m_handlers(std::move(handlers))
{
}

MoviePlayerLink::~MoviePlayerLink()
{
    m_item->removeOutput(m_output);
}

void MoviePlayerLink::start()
{
    m_output->setDelegate(weak_from_this(), GPUImageContext::sharedContextQueue());
    m_output->requestNotificationOfMediaDataChangeWithAdvanceInterval(kAdvanceInterval);
    m_item->addOutput(m_output);
}

void MoviePlayerLink::outputMediaDataWillChange(AVPlayerItemVideoOutput&)
{
    if (!m_timer.isPending())
        displayLinkCallback();
}

void MoviePlayerLink::displayLinkCallback()
{
    processPixelBufferAtTime(m_output->itemTimeForHostTime(Clock::shared()->now() + kDisplayTurn));
    const std::optional<Error> error = m_output->error();
    if (m_output->isDrained() && (error || m_item->hasPlayedToEnd()))
        m_handlers.end(error);
    else if (m_item->rate() != 0) {
        m_timer = DispatchTimer(GPUImageContext::sharedContextQueue(), kDisplayTurn, [weak = weak_from_this()] {
            if (const auto self = weak.lock())
                self->displayLinkCallback();
        });
    }
}

void MoviePlayerLink::processPixelBufferAtTime(const CMTime& itemTime)
{
    if (!m_output->hasNewPixelBufferForItemTime(itemTime))
        return;
    CMSampleBuffer frame;
    frame.imageBuffer = m_output->copyPixelBufferForItemTime(itemTime, &frame.presentationTime);
    if (frame.imageBuffer)
        m_handlers.frame(frame);
}

} // namespace lamina
