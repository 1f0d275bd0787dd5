// Which promotion comes of which feeds, in which order they come, and when none does.
#include "PromotionServer.h"
#include "TestPictures.h"
#include "platform/image/codecs/PictureEncoding.h"
#include "promotion/CrossPromotionCoordinater.h"
#include "promotion/FetchProductViewModel.h"

#include <gtest/gtest.h>
#include <set>

namespace lamina::test {
namespace {

std::string app(const std::string& name, int isCheck)
{
    return R"({"appName":")" + name + R"(","accountName":"us","isCheck":)" + std::to_string(isCheck) + "}";
}

class Coordinator : public testing::Test {
protected:
    Coordinator()
    {
        const auto png = encodePNG(rampPicture(40, 20, 7), "ad");
        server.set("/ad.png", {.body = {png->begin(), png->end()}});
        server.set("/broken.png", {.body = {png->begin(), png->begin() + 60}});
        server.set("/cut.png", {.body = {png->begin(), png->end()}, .cutAt = 30});
    }
    std::string promotion(const std::string& picture, const std::string& link = "https://example.org/") const
    {
        return R"({"appLink":")" + link + R"(","interstialLink":")" + picture + R"(","isCheck":0})";
    }
    std::string good() const { return promotion(server.url("/ad.png")); }

    /// Both feeds, the one that is held after the other.
    void setFeeds(HTTPAnswer apps, HTTPAnswer promotions, const char* held = PromotionServer::kPromotions)
    {
        heldIsPromotions = held == PromotionServer::kPromotions;
        HTTPAnswer& last = heldIsPromotions ? promotions : apps;
        last.isHeld = true;
        heldBytes = std::ssize(last.body);
        server.set(PromotionServer::kApps, std::move(apps));
        server.set(PromotionServer::kPromotions, std::move(promotions));
    }
    void start(CrossPromotionCoordinater::RandomIndex index = systemRandomIndex)
    {
        coordinator = std::make_shared<CrossPromotionCoordinater>(std::make_shared<FetchProductViewModel>(), "Lamina",
                                                                  std::move(index));
        coordinator->fetchPromotion([this](const PromotionResult<PromotionData>& result) {
            DispatchQueue::main().async([this, result] { outcomes.push_back(inWords(result)); });
        });
    }
    /// Lets the feeds come, each followed by another of its kind, behind which the first has been dealt with.
    void letFeedsCome()
    {
        fetch(!heldIsPromotions);
        server.release(2 * heldBytes);
        fetch(heldIsPromotions);
    }
    static void fetch(bool promotions)
    {
        const bool came = promotions ? fetched<CustomInterstrial>(EndPointItems::promotions).has_value()
                                     : fetched<iOSAppList>(EndPointItems::apps).has_value();
        ASSERT_TRUE(came);
    }
    static std::string inWords(const PromotionResult<PromotionData>& result)
    {
        if (const auto* const error = std::get_if<PromotionError>(&result))
            return error->domain + " " + std::to_string(error->code) +
                   (error->domain == "NSURLErrorDomain" ? "" : error->description);
        const auto& data = std::get<PromotionData>(result);
        return data.appStoreLink + " " + std::to_string(data.image.pixelSize().width);
    }
    using Words = std::vector<std::string>;

    PromotionServer server;
    bool heldIsPromotions = true;
    std::int64_t heldBytes = 0;
    Words outcomes;
    std::shared_ptr<CrossPromotionCoordinater> coordinator;
};

TEST_F(Coordinator, TellsWhatTheFeedsAllow)
{
    const std::string ours = "[" + app("Other", 1) + "," + app("Lamina", 1) + "]";
    const std::string missing = server.url("/gone.png");
    const Words unknown{"not register 0", "not register 0"};
    const struct {
        const char* name;
        HTTPAnswer apps;
        HTTPAnswer promotions;
        Words outcomes;
        const char* last = PromotionServer::kPromotions;
    } cases[] = {
        {"listed", {.body = ours}, {.body = "[" + good() + "]"}, {"https://example.org/ 40"}},
        {"promotions first",
         {.body = ours},
         {.body = "[" + good() + "]"},
         {"not register 0", "https://example.org/ 40"},
         PromotionServer::kApps},
        {"not listed", {.body = "[" + app("lamina", 1) + "]"}, {.body = "[" + good() + "]"}, unknown},
        {"switched off", {.body = "[" + app("Lamina", 0) + "]"}, {.body = "[" + good() + "]"}, unknown},
        {"listed twice",
         {.body = "[" + app("Lamina", 2) + "," + app("Lamina", 1) + "]"},
         {.body = "[" + good() + "]"},
         {"https://example.org/ 40"}},
        {"nothing to promote", {.body = ours}, {.body = "[]"}, {}},
        {"no web address", {.body = ours}, {.body = "[" + promotion("file:///etc/passwd") + "]"}, {}},
        {"no picture",
         {.body = ours},
         {.body = "[" + promotion(missing) + "]"},
         {"ImageDownloaderError -1Invalid image data"}},
        {"half a picture",
         {.body = ours},
         {.body = "[" + promotion(server.url("/broken.png")) + "]"},
         {"ImageDownloaderError -1Invalid image data"}},
        {"a cut connection",
         {.body = ours},
         {.body = "[" + promotion(server.url("/cut.png")) + "]"},
         {"NSURLErrorDomain -1"}},
        {"no apps", {.body = "no"}, {.body = "[" + good() + "]"}, {"DataError 2", "not register 0"}},
        {"no promotions", {.body = ours}, {.status = 230, .body = "[]"}, {"DataError 1"}},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.name);
        outcomes.clear();
        setFeeds(each.apps, each.promotions, each.last);
        start();
        letFeedsCome();
        DispatchQueue::main().runUntil([&] { return outcomes.size() >= each.outcomes.size(); }, 20);
        EXPECT_EQ(outcomes, each.outcomes);
    }
}

TEST_F(Coordinator, DrawsEachOfSeveral)
{
    const std::string picture = server.url("/ad.png");
    const std::string three = promotion(picture, "a") + "," + promotion(picture, "b") + "," + promotion(picture, "c");
    setFeeds({.body = "[" + app("Lamina", 1) + "]"}, {.body = "[" + three + "]"});
    server.release();
    for (std::size_t index = 0; index < 3; ++index) {
        start([index](std::size_t count) { return count - 1 - index; });
        DispatchQueue::main().runUntil([&] { return outcomes.size() > index; }, 20);
    }
    EXPECT_EQ(std::set(outcomes.begin(), outcomes.end()).size(), 3U);
    std::set<std::size_t> drawn;
    for (int i = 0; i < 100; ++i)
        drawn.insert(systemRandomIndex(3));
    EXPECT_EQ(drawn, (std::set<std::size_t>{0, 1, 2}));
}

TEST_F(Coordinator, SaysNothingOnceItHasGone)
{
    setFeeds({.body = "[]"}, {.body = "[" + good() + "]"}, PromotionServer::kApps);
    start();
    coordinator.reset();
    letFeedsCome();
    DispatchQueue::main().drain();
    EXPECT_EQ(outcomes, Words());
}

} // namespace
} // namespace lamina::test
