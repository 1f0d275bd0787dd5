// Which promotion comes of which feeds, in which order they come, and when none does.
#include "promotion/CrossPromotionCoordinater.h"
#include "PromotionServer.h"
#include "TestPictures.h"
#include "platform/image/codecs/PictureEncoding.h"
#include "promotion/FetchProductViewModel.h"

#include <set>
#include <utility>
#include <variant>

namespace lamina::test {
namespace {

using Words = std::vector<std::string>;

class Coordinator : public testing::Test {
protected:
    Coordinator()
    {
        const auto png = *encodePNG(rampPicture(40, 20, 7), "ad");
        server.set("/ad.png", {.body = {png.begin(), png.end()}});
        server.set("/half.png", {.body = {png.begin(), png.begin() + 60}});
        server.set("/cut.png", {.body = {png.begin(), png.end()}, .cutAt = 30});
    }
    /// A promotion for each picture, which leads to where its number says.
    std::string promotions(const Words& pictures) const
    {
        std::string body;
        for (std::size_t i = 0; i < pictures.size(); ++i)
            body += std::string(i ? "," : "") + R"({"isCheck":0,"appLink":")" + std::to_string(i) +
                    R"(","interstialLink":")" + (pictures[i][0] == '/' ? server.url(pictures[i]) : pictures[i]) + "\"}";
        return "[" + body + "]";
    }
    void start(CrossPromotionCoordinater::RandomIndex index = systemRandomIndex)
    {
        outcomes = std::make_shared<Words>();
        model = std::make_shared<FetchProductViewModel>();
        coordinator = std::make_shared<CrossPromotionCoordinater>(model, "Lamina", std::move(index));
        coordinator->fetchPromotion([outcomes = outcomes](const PromotionResult<PromotionData>& result) {
            const auto* const error = std::get_if<1>(&result);
            const bool ofNetwork = error && error->domain == "NSURLErrorDomain"; // in its own words
            std::string words =
                error ? error->domain + " " + std::to_string(error->code) : std::get<0>(result).appStoreLink;
            words += error && !ofNetwork && !error->description.empty() ? " " + error->description : "";
            outcomes->push_back(words);
        });
    }
    /// Both feeds, the second one once the first has been dealt with, until so much has been told.
    Words run(const std::string& apps, const HTTPAnswer& promotions, bool promotionsFirst, std::size_t count)
    {
        server.set(kApps, {.body = apps, .isHeld = promotionsFirst});
        server.set(kPromotions, {.status = promotions.status, .body = promotions.body, .isHeld = !promotionsFirst});
        const std::size_t asked = server.requests().size();
        start();
        const auto hasFirst = [&] {
            return !(promotionsFirst ? model->customAds().empty() : model->products().empty() && outcomes->empty());
        };
        // What is held is let go when both were asked for: a request that comes later would take the next feed.
        const auto bothAsked = [&] { return server.requests().size() >= asked + 2 && askOnAnswers(hasFirst); };
        EXPECT_TRUE(
            DispatchQueue::main().runUntil([&] { return bothAsked() || askOnAnswers([] { return false; }); }, 20));
        if (isLeft)
            coordinator.reset();
        outcomes->resize(isLeft ? 0 : outcomes->size());
        server.release(std::ssize(promotionsFirst ? apps : promotions.body));
        const auto isOver = [&] {
            const bool hasSecond = !(promotionsFirst ? model->products().empty() : model->customAds().empty());
            return outcomes->size() >= count && (count > 0 || hasSecond || promotions.body == "[]");
        };
        EXPECT_TRUE(waitOnAnswers(isOver));
        return *outcomes;
    }

    PromotionServer server;
    bool isLeft = false; ///< between the feeds
    std::shared_ptr<Words> outcomes;
    std::shared_ptr<FetchProductViewModel> model;
    std::shared_ptr<CrossPromotionCoordinater> coordinator;
};

TEST_F(Coordinator, TellsWhatTheFeedsAllow)
{
    const auto app = [](const std::string& name, int isCheck) {
        return R"({"appName":")" + name + R"(","accountName":"us","isCheck":)" + std::to_string(isCheck) + "}";
    };
    const std::string ours = "[" + app("Other", 1) + "," + app("Lamina", 1) + "]";
    const std::string off = "[" + app("lamina", 1) + "," + app("Lamina", 0) + "]";
    const std::string twice = "[" + app("Lamina", 2) + "," + app("Lamina", 1) + "]";
    const std::string unknown = "not register 0";
    const std::string noPicture = "ImageDownloaderError -1 Invalid image data";
    const std::string good = promotions({"/ad.png"});
    const struct {
        std::string apps;
        HTTPAnswer promotions;
        Words outcomes;
        bool promotionsFirst = false;
    } cases[] = {
        {ours, {.body = good}, {"0"}},
        {ours, {.body = good}, {unknown, "0"}, true},
        {off, {.body = good}, {unknown, unknown}},
        {twice, {.body = good}, {"0"}},
        {ours, {.body = "[]"}, {}},
        {ours, {.body = promotions({"file:///etc/passwd"})}, {}},
        {ours, {.body = promotions({"/gone.png"})}, {noPicture}},
        {ours, {.body = promotions({"/half.png"})}, {noPicture}},
        {ours, {.body = promotions({"/cut.png"})}, {"NSURLErrorDomain -1"}},
        {"no", {.body = good}, {"DataError 2", unknown}},
        {ours, {.status = 230, .body = "[]"}, {"DataError 1"}},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.apps + " " + each.promotions.body);
        EXPECT_EQ(run(each.apps, each.promotions, each.promotionsFirst, each.outcomes.size()), each.outcomes);
    }
    isLeft = true;
    EXPECT_EQ(run(ours, {.body = good}, true, 0), Words());

    server.set(kApps, {.body = ours});
    server.set(kPromotions, {.body = promotions({"/ad.png", "/ad.png", "/ad.png"})});
    for (const std::size_t index : {2U, 0U, 1U}) {
        start([index](std::size_t count) { return index % count; });
        EXPECT_TRUE(waitOnAnswers([&] { return !outcomes->empty() && outcomes->back() == std::to_string(index); }));
    }
    std::set<std::size_t> drawn;
    for (int i = 0; i < 100; ++i)
        drawn.insert(systemRandomIndex(3));
    EXPECT_EQ(drawn, (std::set<std::size_t>{0, 1, 2}));
}

} // namespace
} // namespace lamina::test
