#pragma once

#include "promotion/DataError.h"
#include "promotion/EventHandler.h"
#include "promotion/PromotionRecords.h"

#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace lamina {

/// Fetches the two feeds side by side and tells how that goes; each tells `loaded` for itself. Must be held by
/// std::shared_ptr. The feeds are written on the URL session's queue, just before it is told, and are to be read
/// there; the operations may be called from any thread.
class FetchProductViewModel : public std::enable_shared_from_this<FetchProductViewModel> {
public:
    using Handler = std::function<void(const EventHandler& event)>;

    /// The feed `apps`; empty until it has come.
    const std::vector<iOSAppList>& products() const { return m_products; }
    /// The feed `promotions`; empty until it has come.
    const std::vector<CustomInterstrial>& customAds() const { return m_customAds; }

    /// Hears of all events from now on: `loading` on the thread that fetches, the others on the URL session's queue.
    void setEventHandler(Handler handler);
    /// No event of a fetch that ends comes while the result is held, so that a handler set meanwhile misses none. Not
    /// for long: the URL session waits.
    [[nodiscard]] std::unique_lock<std::recursive_mutex> holdEvents();

    /// Fetches `apps`, and stays alive until they are here.
    void fetchProducts();
    /// Fetches `promotions`; when this has gone before they are here nothing happens.
    void fetchCustomAds();

private:
    void publish(const EventHandler& event);
    template <class Record>
    void finish(FeedResult<Record> result, std::vector<Record>& feed);

    std::vector<iOSAppList> m_products;
    std::vector<CustomInterstrial> m_customAds;
    std::recursive_mutex m_mutex; ///< of the handler; held by who fetches while `loading` is told
    Handler m_eventHandler;
};

} // namespace lamina
