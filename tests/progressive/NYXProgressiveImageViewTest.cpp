#include "progressive/NYXProgressiveImageView.h"

#include "CommandRunner.h"
#include "LogCapture.h"
#include "OwnCache.h"
#include "TestHTTPServer.h"
#include "TestPaths.h"
#include "TestPictures.h"
#include "WaitUntil.h"
#include "platform/base/DispatchQueue.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/net/NetworkCauses.h"
#include "progressive/ProgressiveCache_p.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <new>
#include <utility>

namespace lamina {
namespace {

using test::HTTPAnswer;
using test::TestHTTPServer;

/// Notes the calls in their order.
class Recorder : public NYXProgressiveImageViewDelegate {
public:
    bool respondsTo(Call) const override { return responds; }
    void imageDidLoadWithImage(const UIImage& image) override { note("loaded", image); }
    void imageDownloadCompletedWithImage(const UIImage& image) override
    {
        note("completed", image);
        if (atCompleted)
            atCompleted();
    }
    void imageDownloadFailedWithData(std::span<const std::uint8_t> data) override
    {
        calls += "failed ";
        failedWith = data.size();
    }

    bool responds = true;
    std::string calls;
    std::size_t failedWith = 0;
    std::function<void()> atCompleted;

private:
    void note(const std::string& call, const UIImage& image) { calls += call + (image ? " " : "-empty "); }
};

/// Of how many rows a part is the whole's, looked at here and there; the rest must be black. -1 where it isn't.
int rowsOf(const CGImage& part, const CGImage& whole)
{
    int rows = 0;
    for (int y = 0; y < part.height(); ++y) {
        const test::Rgba wanted = test::pixelAt(whole, y % part.width(), y);
        const bool isThere = test::pixelMatches(part, y % part.width(), y, {255, wanted[0], wanted[1], wanted[2]});
        if (isThere ? rows < y : !test::pixelMatches(part, y % part.width(), y, {255, 0, 0, 0}))
            return -1;
        rows += isThere ? 1 : 0;
    }
    return rows;
}

const auto* const ownCache = testing::AddGlobalTestEnvironment(new test::OwnCache);

class NYXProgressiveImageViewTest : public testing::Test {
protected:
    NYXProgressiveImageViewTest()
    {
        NYXProgressiveImageView::resetImageCache();
        makeView();
    }
    ~NYXProgressiveImageViewTest() override { view.reset(); }

    void makeView()
    {
        view = std::make_shared<NYXProgressiveImageView>();
        view->setDelegate(recorder);
    }
    void load(const std::string& path) { view->loadImageAtURL(server.url(path)); }
    void settle() { ASSERT_TRUE(DispatchQueue::main().runUntilIdle(kPatience)); }
    std::string loadAndSettle(const std::string& path)
    {
        recorder->calls.clear();
        load(path);
        settle();
        return recorder->calls;
    }
    /// Lets half of the photo come, and waits for a part of it.
    void loadHalf()
    {
        load("/photo.jpg");
        server.release(static_cast<std::int64_t>(photo.size() / 2));
        ASSERT_TRUE(DispatchQueue::main().runUntil([this] { return static_cast<bool>(view->image()); }, kPatience));
    }
    std::string cachedFile() const
    {
        return NYXProgressiveImageView::cacheDirectoryAddress() + "/" +
               progressivecache::fileName(server.url("/photo.jpg"));
    }
    bool isCacheEmpty() const { return !std::filesystem::exists(NYXProgressiveImageView::cacheDirectoryAddress()); }

    static constexpr double kPatience = 20;
    test::LogCapture log;
    TestHTTPServer server;
    std::string photo = test::readFile(test::samples("dunes.jpg"));
    std::shared_ptr<Recorder> recorder = std::make_shared<Recorder>();
    std::shared_ptr<NYXProgressiveImageView> view;
};

TEST_F(NYXProgressiveImageViewTest, GrowsFromTheTopAndEndsWithTheWhole)
{
    const UIImage whole = *loadPicture(test::samples("dunes.jpg"));
    server.set("/photo.jpg", {.body = photo, .isHeld = true});
    loadHalf();
    EXPECT_TRUE(view->downloading());
    load("/other.jpg");

    int rows = 0;
    const auto seesMore = [&] {
        const int before = std::exchange(rows, rowsOf(view->image().cgImage(), whole.cgImage()));
        EXPECT_LE(before, rows);
        return rows > whole.cgImage().height() / 3;
    };
    ASSERT_TRUE(DispatchQueue::main().runUntil(seesMore, kPatience));
    EXPECT_EQ(view->image().pixelSize(), whole.pixelSize());

    recorder->atCompleted = [&] {
        EXPECT_TRUE(view->downloading());
        EXPECT_EQ(view->image().cgImage().alphaInfo(), CGImageAlphaInfo::NoneSkipFirst); // a part as yet
    };
    server.release();
    settle();
    EXPECT_EQ(recorder->calls, "completed loaded ");
    EXPECT_TRUE(test::imagesMatch(view->image().cgImage(), whole.cgImage()));
    EXPECT_FALSE(view->downloading());
    EXPECT_FALSE(view->downloadError());
    EXPECT_EQ(server.requests().size(), 1u);
    EXPECT_TRUE(isCacheEmpty());
}

TEST_F(NYXProgressiveImageViewTest, KeepsFilesForAWhile)
{
    namespace fs = std::filesystem;
    server.set("/photo.jpg", {.body = photo});
    view->setCaching(true);
    EXPECT_EQ(loadAndSettle("/photo.jpg"), "completed loaded ");
    EXPECT_EQ(test::readFile(cachedFile()), photo);
    const auto age = [&](int seconds) {
        fs::last_write_time(cachedFile(), fs::file_time_type::clock::now() - std::chrono::seconds(seconds));
    };
    age(604'740);
    EXPECT_EQ(loadAndSettle("/photo.jpg"), "loaded ");
    age(604'801);
    EXPECT_EQ(loadAndSettle("/photo.jpg"), "completed loaded ");
    test::writeFile(cachedFile(), "no picture any more");
    EXPECT_EQ(loadAndSettle("/photo.jpg"), "completed loaded ");
    EXPECT_EQ(server.requests().size(), 3u);

    EXPECT_EQ(loadAndSettle("/photo.jpg"), "loaded ");
    view->resetCache();
    EXPECT_FALSE(fs::exists(cachedFile()));
    NYXProgressiveImageView::resetImageCache();
    EXPECT_TRUE(isCacheEmpty());
}

TEST_F(NYXProgressiveImageViewTest, AFailureKeepsThePartAndLeavesNothingBehind)
{
    view->setCaching(true);
    server.set("/photo.jpg", {.body = photo, .isHeld = true, .cutAt = static_cast<std::int64_t>(photo.size() / 2)});
    loadHalf();
    settle();
    EXPECT_EQ(recorder->calls, "failed ");
    EXPECT_GT(recorder->failedWith, 0u);
    EXPECT_LE(recorder->failedWith, photo.size() / 2);
    EXPECT_EQ(view->downloadError()->cause, cause::kAnswerCut);
    EXPECT_TRUE(view->image());

    // What is no picture is told as none, and the last one stays.
    EXPECT_EQ(loadAndSettle("/missing.jpg?secret"), "completed-empty loaded-empty ");
    EXPECT_EQ(view->downloadError()->cause, cause::kNotAPicture);
    EXPECT_TRUE(view->image());
    EXPECT_EQ(log.text().find("secret"), std::string::npos);

    // A picture that a server sends instead is not kept.
    server.set("/photo.jpg", {.status = 404, .body = photo});
    EXPECT_EQ(loadAndSettle("/photo.jpg"), "completed loaded ");
    EXPECT_FALSE(view->downloadError());

    // Before anything has come.
    server.set("/photo.jpg", test::redirectTo("file:///etc/passwd"));
    EXPECT_EQ(loadAndSettle("/photo.jpg"), "failed ");
    EXPECT_EQ(recorder->failedWith, 0u);
    EXPECT_TRUE(isCacheEmpty());
}

TEST_F(NYXProgressiveImageViewTest, AViewThatGoesStopsItsLoad)
{
    server.set("/photo.jpg", {.body = photo, .isHeld = true});
    loadHalf();
    view.reset();
    EXPECT_TRUE(test::waitUntil([this] { return server.connections() == 0; }));
    settle();
    EXPECT_EQ(recorder->calls, "");

    // By its delegate.
    server.set("/photo.jpg", {.body = photo});
    makeView();
    recorder->atCompleted = [this] { view.reset(); };
    EXPECT_EQ(loadAndSettle("/photo.jpg"), "completed ");
}

TEST_F(NYXProgressiveImageViewTest, ALoadEndsThoughItsDelegateThrows)
{
    server.set("/photo.jpg", {.body = photo});
    recorder->atCompleted = [] { throw std::bad_alloc(); };
    EXPECT_EQ(loadAndSettle("/photo.jpg"), "completed ");
    EXPECT_FALSE(view->downloading());
}

TEST_F(NYXProgressiveImageViewTest, AsksADelegateOnceWhatItWants)
{
    server.set("/photo.jpg", {.body = test::readFile(test::testData("pictures/exif-6.jpg"))});
    for (const bool responds : {false, true}) {
        view->setDelegate(nullptr);
        recorder->responds = responds;
        view->setDelegate(recorder);
        recorder->responds = !responds;
        view->setDelegate(recorder);
        EXPECT_EQ(loadAndSettle("/photo.jpg"), responds ? "completed loaded " : "");
    }
    EXPECT_EQ(view->image().pixelSize(), (IntSize{64, 48})); // upright
}

} // namespace
} // namespace lamina
