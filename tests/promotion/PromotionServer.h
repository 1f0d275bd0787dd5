#pragma once

#include "TestHTTPServer.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/DispatchSemaphore.h"
#include "platform/net/NSURLSession.h"
#include "promotion/APIHelper.h"
#include "promotion/DataError.h"
#include "promotion/EndPointItems.h"

#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <optional>

namespace lamina::test {

inline constexpr const char* kApps = "/feeds/iosapps.php";
inline constexpr const char* kPromotions = "/feeds/iosinterstial.php";

/// A server that is named as the promotions' for as long as it lives.
class PromotionServer : public TestHTTPServer {
public:
    PromotionServer() { ::setenv("LAMINA_PROMOTION_ROOT", url("/feeds/").c_str(), 1); }
    ~PromotionServer() { ::unsetenv("LAMINA_PROMOTION_ROOT"); }
};

/// Asks on the queue on which answers come, behind those that came before.
inline bool askOnAnswers(const std::function<bool()>& question)
{
    bool answer = false;
    DispatchSemaphore asked{0};
    NSURLSession::sharedSession().dataTask({.URL = "no address"}, [&](const NSURLTaskResult&) {
        answer = question();
        DispatchQueue::main().async([] {}); // behind which whoever waits asks again
        asked.signal();
    });
    asked.wait();
    return answer;
}
/// Until it is so.
inline bool waitOnAnswers(const std::function<bool()>& question)
{
    return DispatchQueue::main().runUntil([&] { return askOnAnswers(question); }, 20);
}

/// A feed as it is fetched.
template <class Record>
FeedResult<Record> fetched(EndPointItems::Item item)
{
    std::optional<FeedResult<Record>> fetched;
    APIHelper::shared().request<Record>(EndPointItems(item), [&](FeedResult<Record> result) {
        DispatchQueue::main().async([&, result] { fetched = result; });
    });
    EXPECT_TRUE(DispatchQueue::main().runUntil([&] { return fetched.has_value(); }, 20));
    return *fetched;
}

} // namespace lamina::test
