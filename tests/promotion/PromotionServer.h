#pragma once

#include "TestHTTPServer.h"
#include "platform/base/DispatchQueue.h"
#include "promotion/APIHelper.h"
#include "promotion/EndPointItems.h"

#include <cstdlib>
#include <optional>
#include <string>

namespace lamina::test {

/// A server that is named as the promotions' for as long as it lives.
class PromotionServer : public TestHTTPServer {
public:
    static constexpr const char* kApps = "/feeds/iosapps.php";
    static constexpr const char* kPromotions = "/feeds/iosinterstial.php";

    PromotionServer() { ::setenv("LAMINA_PROMOTION_ROOT", url("/feeds/").c_str(), 1); }
    ~PromotionServer() { ::unsetenv("LAMINA_PROMOTION_ROOT"); }
};

/// A feed as it is fetched; nothing when no answer came.
template <class Record>
std::optional<FeedResult<Record>> fetched(EndPointItems::Item item)
{
    std::optional<FeedResult<Record>> fetched;
    APIHelper::shared().request<Record>(EndPointItems(item), [&](FeedResult<Record> result) {
        DispatchQueue::main().async([&, result] { fetched = result; });
    });
    DispatchQueue::main().runUntil([&] { return fetched.has_value(); }, 20);
    return fetched;
}

} // namespace lamina::test
