// The feeds as a server gives them: which answers are one, and what stands in it.
#include "PromotionServer.h"

#include "promotion/PromotionRecords.h"

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace lamina::test {
namespace {

using enum DataError;
using Framing = HTTPAnswer::Framing;
using Outcome = std::variant<std::size_t, DataError>; ///< how many records, or the error

std::string feed(const std::string& isCheck, const std::string& before = {})
{
    return "[{" + before + R"("appName":"Lamina","accountName":"us","isCheck":)" + isCheck + "}]";
}
std::string nested(int levels)
{
    return R"("x":)" + std::string(levels, '[') + std::string(levels, ']') + ",";
}

TEST(APIHelper, TakesWholeFeedsOfAGoodStatusAlone)
{
    const std::string good = feed("1");
    const struct {
        HTTPAnswer answer;
        Outcome outcome;
    } cases[] = {
        {{.body = good}, 1U},
        {{.body = "[]"}, 0U},
        {{.body = good, .framing = Framing::UntilClosed, .isPacked = true}, 1U},
        {{.status = 229, .body = good}, 1U},
        {{.status = 230, .body = good}, inalidResponse},
        {{.status = 404, .body = good}, inalidResponse},
        {{.status = 204}, invalidData},
        {{.body = good, .cutAt = 20}, invalidURL},
        {{.body = good, .framing = Framing::Chunked, .copies = HTTPAnswer::kEndless}, invalidURL},
        {{.body = "<html>"}, invalidData},
        {{.body = "{}"}, invalidData},
        {{.body = "[[]]"}, invalidData},
        {{.body = good + "]"}, invalidData},
        {{.body = R"([{"appName":"Lamina","isCheck":1}])"}, invalidData},
        {{.body = feed("1", "\"x\":\"\xff\",")}, invalidData},
        {{.body = feed("1", nested(20))}, 1U},
        {{.body = feed("1", nested(40))}, invalidData},
        {{.body = std::string(1 << 20, '[')}, invalidData},
        {{.body = feed("1", R"("appName":null,)")}, 1U}, // of a key that stands twice the last one counts
        {{.body = feed("1,\"appName\":null")}, invalidData},
    };
    PromotionServer server;
    for (const auto& [answer, outcome] : cases) {
        SCOPED_TRACE(std::to_string(answer.status) + " " + answer.body.substr(0, 60));
        server.set(kApps, answer);
        const auto result = fetched<iOSAppList>(EndPointItems::apps);
        if (const auto* const apps = std::get_if<0>(&result))
            EXPECT_EQ(Outcome(apps->size()), outcome);
        else
            EXPECT_EQ(Outcome(std::get<1>(result)), outcome);
    }
}

TEST(APIHelper, KnowsIntegersAndBytes)
{
    PromotionServer server;
    const std::pair<const char*, std::optional<std::int64_t>> numbers[] = {{"1.0", 1},
                                                                           {"-9223372036854775808", INT64_MIN},
                                                                           {"9223372036854775807", INT64_MAX},
                                                                           {"-2e3", -2000},
                                                                           {"-9223372036854775809", {}},
                                                                           {"9223372036854775808", {}},
                                                                           {"1e400", {}},
                                                                           {"1.5", {}},
                                                                           {"\"1\"", {}},
                                                                           {"true", {}},
                                                                           {"null", {}}};
    for (const auto& [written, value] : numbers) {
        server.set(kApps, {.body = feed(written)});
        const auto result = fetched<iOSAppList>(EndPointItems::apps);
        const auto* const apps = std::get_if<0>(&result);
        EXPECT_EQ(apps ? std::optional(apps->front().isCheck) : std::nullopt, value) << written;
    }
    const std::string resource = R"([{"interstialLink":"a","appLink":"b","imagedata":"A)";
    server.set(kPromotions, {.body = resource + "P8=\"}]"});
    const auto read = fetched<ImageDataResource>(EndPointItems::promotions);
    EXPECT_EQ(std::get<0>(read).front().imagedata, (std::vector<std::uint8_t>{0, 255}));
    server.set(kPromotions, {.body = resource + "*8=\"}]"});
    EXPECT_EQ(std::get<1>(fetched<ImageDataResource>(EndPointItems::promotions)), invalidData);
}

TEST(APIHelper, AsksNobodyWithoutARoot)
{
    for (const char* const root : {"", "file:///etc/", "https://example.org/feeds", "http:///"}) {
        ::setenv("LAMINA_PROMOTION_ROOT", root, 1);
        EXPECT_EQ(EndPointItems(EndPointItems::apps).url(), std::nullopt) << root;
    }
    ::unsetenv("LAMINA_PROMOTION_ROOT");
    bool isTold = false;
    APIHelper::shared().request<iOSAppList>(EndPointItems(EndPointItems::apps), [&](const auto&) { isTold = true; });
    EXPECT_FALSE(askOnAnswers([&] { return isTold; }));
}

} // namespace
} // namespace lamina::test
