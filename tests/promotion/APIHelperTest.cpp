// The feeds as a server gives them: which answers are one, and what stands in it.
#include "PromotionServer.h"

#include <gtest/gtest.h>
#include <limits>

namespace lamina::test {
namespace {

using enum DataError;
using Apps = std::vector<iOSAppList>;

/// How many records, or the error.
using Outcome = std::variant<std::size_t, DataError>;
Outcome outcomeOf(const FeedResult<iOSAppList>& result)
{
    const auto* const apps = std::get_if<Apps>(&result);
    return apps ? Outcome(apps->size()) : Outcome(std::get<DataError>(result));
}

/// A feed of one record whose `isCheck` is written so.
std::string feed(const std::string& isCheck, const std::string& before = {})
{
    return "[{" + before + R"("appName":"Lamina","accountName":"us","isCheck":)" + isCheck + "}]";
}

TEST(APIHelper, TakesWholeFeedsOfAGoodStatusAlone)
{
    using Framing = HTTPAnswer::Framing;
    const std::string good = feed("1");
    const std::string endless(4096, ' ');
    const struct {
        HTTPAnswer answer;
        Outcome outcome;
    } cases[] = {
        {{.body = good}, 1U},
        {{.body = "[]"}, 0U},
        {{.body = good, .framing = Framing::Chunked, .piece = 3}, 1U},
        {{.body = good, .framing = Framing::UntilClosed, .isPacked = true}, 1U},
        {{.status = 229, .body = good}, 1U},
        {{.status = 230, .body = good}, inalidResponse},
        {{.status = 404, .body = good}, inalidResponse},
        {{.status = 204}, invalidData},
        {{.body = good, .cutAt = 20}, invalidURL},
        {{.body = endless, .framing = Framing::Chunked, .copies = HTTPAnswer::kEndless}, invalidURL},
        {{.body = "<html>"}, invalidData},
        {{.body = "{}"}, invalidData},
        {{.body = "[[]]"}, invalidData},
        {{.body = good + "]"}, invalidData},
        {{.body = R"([{"appName":"Lamina","isCheck":1}])"}, invalidData},
        {{.body = feed("1", "\"x\":\"\xff\",")}, invalidData},
        {{.body = feed("1", R"("x":)" + std::string(20, '[') + std::string(20, ']') + ",")}, 1U},
        {{.body = feed("1", R"("x":)" + std::string(40, '[') + std::string(40, ']') + ",")}, invalidData},
        {{.body = std::string(1 << 20, '[')}, invalidData},
        {{.body = feed("1", R"("appName":null,)")}, 1U}, // the last one counts
        {{.body = feed("1,\"appName\":null")}, invalidData},
    };
    PromotionServer server;
    for (const auto& each : cases) {
        SCOPED_TRACE(std::to_string(each.answer.status) + " " + each.answer.body.substr(0, 60));
        server.set(PromotionServer::kApps, each.answer);
        const auto result = fetched<iOSAppList>(EndPointItems::apps);
        ASSERT_TRUE(result);
        EXPECT_EQ(outcomeOf(*result), each.outcome);
    }
    EXPECT_EQ(server.requests().front().method, "GET");
}

TEST(APIHelper, KnowsIntegersAndBytes)
{
    const struct {
        const char* written;
        std::optional<std::int64_t> value;
    } cases[] = {{"1.0", 1},
                 {"-2e3", -2000},
                 {"9223372036854775807", std::numeric_limits<std::int64_t>::max()},
                 {"-9223372036854775808", std::numeric_limits<std::int64_t>::min()},
                 {"9223372036854775808", {}},
                 {"-9223372036854775809", {}},
                 {"1e400", {}},
                 {"1.5", {}},
                 {"true", {}},
                 {"null", {}},
                 {"\"1\"", {}}};
    for (const auto& each : cases) {
        const std::string body = feed(each.written);
        const auto apps = decodeFeed<iOSAppList>({reinterpret_cast<const std::uint8_t*>(body.data()), body.size()});
        EXPECT_EQ(apps ? std::optional(apps->front().isCheck) : std::nullopt, each.value) << each.written;
    }
    PromotionServer server;
    server.set(PromotionServer::kPromotions, {.body = R"([{"interstialLink":"a","appLink":"b","imagedata":"AP8="}])"});
    const auto resource = fetched<ImageDataResource>(EndPointItems::promotions);
    EXPECT_EQ(std::get<0>(*resource).front().imagedata, (std::vector<std::uint8_t>{0, 255}));
    server.set(PromotionServer::kPromotions, {.body = R"([{"interstialLink":"a","appLink":"b","imagedata":"A*8="}])"});
    EXPECT_EQ(std::get<1>(*fetched<ImageDataResource>(EndPointItems::promotions)), invalidData);
}

TEST(APIHelper, AsksNobodyWithoutARoot)
{
    for (const char* const root : {"", "file:///etc/", "https://example.org/feeds", "feeds/", "http:///"}) {
        ::setenv("LAMINA_PROMOTION_ROOT", root, 1);
        EXPECT_EQ(EndPointItems(EndPointItems::apps).url(), std::nullopt) << root;
        APIHelper::shared().request<iOSAppList>(EndPointItems(EndPointItems::apps), [](const auto&) { FAIL(); });
    }
    ::unsetenv("LAMINA_PROMOTION_ROOT");
}

} // namespace
} // namespace lamina::test
