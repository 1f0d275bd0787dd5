#include "progressive/NYXProgressiveImageView.h"

#include "platform/base/DispatchQueue.h"
#include "progressive/ProgressiveCache_p.h"
#include "progressive/ProgressiveLoad_p.h"
#include "progressive/ProgressiveState_p.h"

namespace lamina {

using Phase = ProgressiveState::Phase;

NYXProgressiveImageView::NYXProgressiveImageView(const CGRect& frame)
    : UIImageView(frame)
{
    initializeAttributes();
}

NYXProgressiveImageView::NYXProgressiveImageView(const UIImage& image)
    : UIImageView(image)
{
    initializeAttributes();
}

NYXProgressiveImageView::~NYXProgressiveImageView()
{
    m_state->viewGoes();
    if (m_load)
        m_load->leave();
}

void NYXProgressiveImageView::initializeAttributes()
{
    constexpr double kWeek = 604'800;
    m_state = std::make_shared<ProgressiveState>(*this);
    m_cacheTime = kWeek;
}

void NYXProgressiveImageView::loadImageAtURL(const std::string& url)
{
    if (m_state->phase != Phase::Idle)
        return;
    m_state->phase = Phase::ReadingCache;
    m_state->setURL(url);
    m_state->setError(std::nullopt);
    if (!m_queue)
        m_queue.emplace(std::make_shared<DispatchQueue>("com.vx.pdlqueue"));
    m_load = ProgressiveLoad::start(url, m_cacheTime, m_state, m_queue->share());
}

void NYXProgressiveImageView::resetCache()
{
    progressivecache::remove(m_state->url());
}

void NYXProgressiveImageView::resetImageCache()
{
    progressivecache::removeAll();
}

std::string NYXProgressiveImageView::cacheDirectoryAddress()
{
    return progressivecache::folder();
}

int NYXProgressiveImageView::exifOrientationToiOSOrientation(int value)
{
    return static_cast<int>(orientationFromExif(value));
}

bool NYXProgressiveImageView::caching() const
{
    return m_state->caching;
}

void NYXProgressiveImageView::setCaching(bool caching)
{
    m_state->caching = caching;
}

bool NYXProgressiveImageView::downloading() const
{
    return m_state->phase == Phase::Downloading;
}

std::optional<Error> NYXProgressiveImageView::downloadError() const
{
    return m_state->error();
}

void NYXProgressiveImageView::setDelegate(const std::shared_ptr<NYXProgressiveImageViewDelegate>& delegate)
{
    if (delegate == m_delegate.lock())
        return;
    m_delegate = delegate;
    m_delegateFlags = 0;
    for (const Call call : {Call::ImageDidLoad, Call::ImageDownloadCompleted, Call::ImageDownloadFailed})
        if (delegate && delegate->respondsTo(call))
            m_delegateFlags |= static_cast<unsigned>(call);
}

std::shared_ptr<NYXProgressiveImageViewDelegate> NYXProgressiveImageView::delegateFor(Call call) const
{
    return m_delegateFlags & static_cast<unsigned>(call) ? m_delegate.lock() : nullptr;
}

} // namespace lamina
