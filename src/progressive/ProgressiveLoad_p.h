#pragma once

#include "platform/base/DispatchQueue.h"
#include "platform/base/Result.h"
#include "platform/image/codecs/CGImageSource.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/net/KeptQueue.h"
#include "platform/net/NSURLConnection.h"
#include "progressive/ProgressivePace_p.h"
#include "progressive/ProgressiveState_p.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace lamina {

/// One load of a progressive view: from the cache, or as its file comes. Made and left on the main thread; all else
/// happens on the view's queue.
class ProgressiveLoad : public NSURLConnectionDelegate, public std::enable_shared_from_this<ProgressiveLoad> {
public:
    /// The state's phase is `ReadingCache` by then.
    static std::shared_ptr<ProgressiveLoad> start(const std::string& url, double cacheTime,
                                                  std::shared_ptr<ProgressiveState> state,
                                                  const std::shared_ptr<DispatchQueue>& queue);

    /// The state's view has gone: the network is left at once. Waits for nobody. Main thread.
    void leave();

    void didReceiveResponse(const NSURLResponse& response) override;
    void didReceiveData(std::span<const std::uint8_t> data) override;
    void connectionDidFinishLoading() override;
    void didFailWithError(const Error& error) override;

private:
    ProgressiveLoad(std::string url, double cacheTime, std::shared_ptr<ProgressiveState> state,
                    const std::shared_ptr<DispatchQueue>& queue);

    void failWhereThrown(const std::function<void()>& step);
    void begin();
    bool showCached();
    void updateSource();
    void readProperties();
    void showWhenDue();
    void show();
    void setError(const Error& error);
    void end();
    std::int64_t size() const { return static_cast<std::int64_t>(m_dataTemp.size()); }

    const std::string m_url;
    const double m_cacheTime;
    const std::shared_ptr<ProgressiveState> m_state;
    const KeptQueue m_queue;
    MainQueue::ExpectedWork m_expected;
    std::unique_ptr<NSURLConnection> m_connection;

    std::unique_ptr<CGImageSource> m_imageSource; ///< while parts are shown
    std::int32_t m_imageWidth = -1;
    std::int32_t m_imageHeight = -1;
    int m_imageOrientation = 0;
    std::int64_t m_expectedSize = -1;
    std::optional<int> m_statusCode;
    std::vector<std::uint8_t> m_dataTemp;
    ProgressivePace m_pace;
    bool m_isWaiting = false; ///< for the next part's time
};

} // namespace lamina
