#include "progressive/ProgressiveLoad_p.h"

#include "platform/base/Clock.h"
#include "platform/base/ExceptionCause.h"
#include "platform/base/Log.h"
#include "platform/base/ScopeExit.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/net/WebAddress.h"
#include "progressive/NYXProgressiveImageView.h"
#include "progressive/ProgressiveCache_p.h"

#include <utility>

namespace lamina {

using Call = NYXProgressiveImageViewDelegate::Call;
using Phase = ProgressiveState::Phase;

std::shared_ptr<ProgressiveLoad> ProgressiveLoad::start(const std::string& url, double cacheTime,
                                                        std::shared_ptr<ProgressiveState> state,
                                                        const std::shared_ptr<DispatchQueue>& queue)
{
    constexpr double kSecondsOfSilence = 10;
    std::shared_ptr<ProgressiveLoad> load(new ProgressiveLoad(url, cacheTime, std::move(state), queue));
    const NSURLRequest request{.URL = url,
                               .cachePolicy = NSURLRequestCachePolicy::ReturnCacheDataElseLoad,
                               .timeoutInterval = kSecondsOfSilence};
    load->m_connection = std::make_unique<NSURLConnection>(request, load, queue);
    queue->async([load] { load->failWhereThrown([&] { load->begin(); }); });
    return load;
}

ProgressiveLoad::ProgressiveLoad(std::string url, double cacheTime, std::shared_ptr<ProgressiveState> state,
                                 const std::shared_ptr<DispatchQueue>& queue)
    : m_url(std::move(url))
    , m_cacheTime(cacheTime)
    , m_state(std::move(state))
    , m_queue(queue)
    , m_expected(DispatchQueue::main().expectWork())
{
}

void ProgressiveLoad::leave()
{
    m_connection->cancel();
}

void ProgressiveLoad::failWhereThrown(const std::function<void()>& step)
{
    try {
        step();
    } catch (...) { // nothing more may come behind a hole
        m_connection->cancel();
        didFailWithError({shownAddress(m_url), causeOfException()});
    }
}

void ProgressiveLoad::begin()
{
    if (m_state->caching && showCached()) {
        m_expected.reset();
        return;
    }
    m_state->phase = Phase::Downloading;
    m_connection->start();
}

bool ProgressiveLoad::showCached()
{
    const std::optional<double> age = progressivecache::age(m_url);
    if (!age)
        return false;
    UIImage image;
    if (progressivecache::isFresh(*age, m_cacheTime))
        if (const auto bytes = progressivecache::read(m_url))
            if (auto decoded = decodePicture(*bytes, m_url, {.cancelled = &m_state->gone()}))
                image = *decoded;
    if (!image && !m_state->gone())
        progressivecache::remove(m_url);
    if (!image)
        return false;
    DispatchQueue::main().async([state = m_state, image] {
        state->phase = Phase::Idle;
        if (NYXProgressiveImageView* const view = state->view()) {
            view->setImage(image);
            if (const auto delegate = view->delegateFor(Call::ImageDidLoad))
                delegate->imageDidLoadWithImage(image);
        }
    });
    return true;
}

void ProgressiveLoad::didReceiveResponse(const NSURLResponse& response)
{
    m_imageSource = CGImageSource::makeIncremental({.cancelled = &m_state->gone()});
    m_imageWidth = -1;
    m_imageHeight = -1;
    m_expectedSize = response.expectedContentLength;
    m_statusCode = response.statusCode;
    m_dataTemp.clear();
}

void ProgressiveLoad::didReceiveData(std::span<const std::uint8_t> data)
{
    failWhereThrown([&] {
        m_dataTemp.insert(m_dataTemp.end(), data.begin(), data.end());
        updateSource();
    });
}

void ProgressiveLoad::updateSource()
{
    if (!m_imageSource || size() == m_expectedSize) // the whole is decoded once, when the end is told
        return;
    m_imageSource->updateData(m_dataTemp, false);
    if (m_imageWidth < 1 || m_imageHeight < 1)
        readProperties();
    else
        showWhenDue();
}

void ProgressiveLoad::readProperties()
{
    constexpr std::int64_t kMostPixels = 32'000'000; // two of them are in memory beside the decoder's own
    const std::optional<CGImageProperties> properties = m_imageSource->propertiesAtIndex();
    if (!properties)
        return;
    m_imageHeight = properties->pixelHeight;
    m_imageWidth = properties->pixelWidth;
    m_imageOrientation = NYXProgressiveImageView::exifOrientationToiOSOrientation(properties->orientation.value_or(0));
    if (std::int64_t{m_imageWidth} * m_imageHeight > kMostPixels)
        m_imageSource.reset();
}

void ProgressiveLoad::showWhenDue()
{
    if (!m_imageSource || m_state->gone())
        return;
    const double now = SteadyClock::instance()->now();
    const ProgressivePace::Due due = m_pace.due(size(), m_expectedSize, now);
    if (due == ProgressivePace::Due::Now)
        return show();
    if (due == ProgressivePace::Due::No || std::exchange(m_isWaiting, true))
        return;
    m_queue->after(m_pace.wait(now), [self = weak_from_this()] {
        if (const auto load = self.lock()) {
            load->m_isWaiting = false;
            load->showWhenDue();
        }
    });
}

void ProgressiveLoad::show()
{
    const double began = SteadyClock::instance()->now();
    const CGImage frame =
        NYXProgressiveImageView::createTransitoryImage(m_imageSource->imageAtIndex(), {m_imageWidth, m_imageHeight});
    if (!frame)
        return;
    m_pace.made(size(), began, SteadyClock::instance()->now());
    const UIImage image(frame, 1, static_cast<UIImageOrientation>(m_imageOrientation));
    DispatchQueue::main().async([load = shared_from_this(), image] {
        if (NYXProgressiveImageView* const view = load->m_state->view())
            view->setImage(image);
        load->m_queue->async([load] {
            load->m_pace.arrived();
            load->showWhenDue();
        });
    });
}

void ProgressiveLoad::connectionDidFinishLoading()
{
    const ScopeExit ending([this] { end(); });
    m_imageSource.reset();
    UIImage image;
    if (auto decoded = decodePicture(m_dataTemp, m_url, {.cancelled = &m_state->gone()}))
        image = *decoded;
    else
        setError({shownAddress(m_url), decoded.error().cause});
    m_state->onMainAndWait([image](const ProgressiveState& state) {
        if (const auto delegate = state.view()->delegateFor(Call::ImageDownloadCompleted))
            delegate->imageDownloadCompletedWithImage(image);
        if (NYXProgressiveImageView* const view = state.view(); view && image)
            view->setImage(image);
        const auto delegate = state.view() ? state.view()->delegateFor(Call::ImageDidLoad) : nullptr;
        if (delegate)
            delegate->imageDidLoadWithImage(image);
    });
    // What stands at an address is one thing, what a server says instead another.
    const bool isGood = m_statusCode && *m_statusCode / 100 == 2;
    if (m_state->caching && image && isGood && !m_state->gone())
        progressivecache::write(m_url, m_dataTemp);
}

void ProgressiveLoad::didFailWithError(const Error& error)
{
    const ScopeExit ending([this] { end(); });
    m_imageSource.reset();
    setError(error);
    // A copy of its own: where the view goes meanwhile, the call may still be under way when the data are let go here.
    const auto data = std::make_shared<const std::vector<std::uint8_t>>(std::exchange(m_dataTemp, {}));
    m_state->onMainAndWait([data](const ProgressiveState& state) {
        if (const auto delegate = state.view()->delegateFor(Call::ImageDownloadFailed))
            delegate->imageDownloadFailedWithData(*data);
    });
}

void ProgressiveLoad::setError(const Error& error)
{
    if (m_state->gone())
        return;
    logWarning("a picture from the network: " + error.message());
    m_state->setError(error);
}

void ProgressiveLoad::end()
{
    m_dataTemp = {};
    m_state->setURL({});
    m_state->phase = Phase::Idle;
    m_expected.reset();
}

} // namespace lamina
