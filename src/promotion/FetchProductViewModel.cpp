#include "promotion/FetchProductViewModel.h"

#include "promotion/APIHelper.h"
#include "promotion/EndPointItems.h"

#include <utility>
#include <variant>

namespace lamina {

void FetchProductViewModel::setEventHandler(Handler handler)
{
    const std::scoped_lock lock(m_mutex);
    std::swap(m_eventHandler, handler);
}

std::unique_lock<std::recursive_mutex> FetchProductViewModel::holdEvents()
{
    return std::unique_lock(m_mutex);
}

void FetchProductViewModel::fetchProducts()
{
    publish({EventHandler::loading});
    APIHelper::shared().request<iOSAppList>(
        EndPointItems(EndPointItems::apps),
        [this, self = shared_from_this()](FeedResult<iOSAppList> result) { finish(std::move(result), m_products); });
}

void FetchProductViewModel::fetchCustomAds()
{
    publish({EventHandler::loading});
    APIHelper::shared().request<CustomInterstrial>(EndPointItems(EndPointItems::promotions),
                                                   [weak = weak_from_this()](FeedResult<CustomInterstrial> result) {
                                                       if (const auto self = weak.lock())
                                                           self->finish(std::move(result), self->m_customAds);
                                                   });
}

template <class Record>
void FetchProductViewModel::finish(FeedResult<Record> result, std::vector<Record>& feed)
{
    publish({EventHandler::stoploading});
    if (const auto* const error = std::get_if<DataError>(&result))
        return publish({EventHandler::error, *error});
    feed = std::get<std::vector<Record>>(std::move(result));
    publish({EventHandler::loaded});
}

void FetchProductViewModel::publish(const EventHandler& event)
{
    std::unique_lock lock(m_mutex);
    const Handler handler = m_eventHandler;
    lock.unlock();
    if (handler)
        handler(event);
}

} // namespace lamina
