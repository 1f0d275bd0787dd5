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

std::string record(const std::string& isCheck, const std::string& before = {})
{
    return "{" + before + R"("appName":"Lamina","accountName":"us","isCheck":)" + isCheck + "}";
}
std::string nested(int levels)
{
    return R"("x":)" + std::string(levels, '[') + std::string(levels, ']') + ",";
}

TEST(APIHelper, TakesWholeFeedsOfAGoodStatusAlone)
{
    const std::string one = record("1");
    const std::string good = "[" + one + "]";
    std::vector<std::pair<HTTPAnswer, Outcome>> cases{
        {{.body = good}, 1U},
        {{.body = "[]"}, 0U},
        {{.body = "[" + record("1", nested(20)) + "]"}, 1U},
        {{.body = good, .framing = Framing::UntilClosed, .isPacked = true}, 1U},
        {{.status = 229, .body = good}, 1U},
        {{.status = 230, .body = good}, inalidResponse},
        {{.status = 404, .body = good}, inalidResponse},
        {{.status = 204}, invalidData},
        {{.body = good, .cutAt = 20}, invalidURL},
        {{.body = good, .framing = Framing::Chunked, .copies = HTTPAnswer::kEndless}, invalidURL},
        {{.body = std::string(1 << 20, '[')}, invalidData},
    };
    for (const char* const body : {"<html>", "{}", "[[]]", "[{}]", R"([{"appName":"Lamina","isCheck":1}])"})
        cases.push_back({{.body = body}, invalidData});
    for (const char* const number : {"1.5", "1e400", "9223372036854775808", "-9223372036854775809", "true", "null",
                                     "\"1\"", "1,\"appName\":null", "1,\"x\":\"\xff\""})
        cases.push_back({{.body = "[" + one + "," + record(number) + "]"}, invalidData});
    cases.push_back({{.body = "[" + record("1", nested(40)) + "]"}, invalidData});
    PromotionServer server;
    for (const auto& [answer, outcome] : cases) {
        server.set(kApps, answer);
        const auto result = fetched<iOSAppList>(EndPointItems::apps);
        const auto* const apps = std::get_if<0>(&result);
        EXPECT_EQ(apps ? Outcome(apps->size()) : Outcome(std::get<1>(result)), outcome) << answer.body.substr(0, 80);
    }
}

TEST(APIHelper, KnowsIntegersAndBytes)
{
    PromotionServer server;
    const std::string twice = record("-2e3", R"("appName":null,)"); // the last one counts
    server.set(kApps, {.body = "[" + record("1.0") + "," + twice + "," + record("-9223372036854775808") + "]"});
    const auto apps = fetched<iOSAppList>(EndPointItems::apps);
    std::vector<std::int64_t> numbers;
    for (const iOSAppList& app : std::get<0>(apps))
        numbers.push_back(app.isCheck);
    EXPECT_EQ(numbers, (std::vector<std::int64_t>{1, -2000, INT64_MIN}));
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
