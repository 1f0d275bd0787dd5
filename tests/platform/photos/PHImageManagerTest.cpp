#include "platform/photos/PHImageManager.h"

#include "BusyWorkers.h"
#include "CommandRunner.h"
#include "FileDisguise.h"
#include "Flag.h"
#include "OwnCache.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/DispatchSemaphore.h"
#include "platform/photos/PHCachingImageManager.h"
#include "platform/photos/PictureQueue.h"

#include <cstddef>
#include <gtest/gtest.h>
#include <limits>

namespace lamina::test {
namespace {

using ContentMode = PHImageContentMode;
using DeliveryMode = PHImageRequestOptionsDeliveryMode;
using ResizeMode = PHImageRequestOptionsResizeMode;

const auto* const ownCache = testing::AddGlobalTestEnvironment(new OwnCache);

class ImageRequests : public testing::Test {
protected:
    static PHAsset asset(const std::string& path) { return {path, path, 0, 0, 0}; }
    PHAsset ramp(int width, int height)
    {
        writePng(folder.path("ramp.png"), rampPicture(width, height, 50));
        return {"ramp", folder.path("ramp.png"), width, height, 0};
    }
    /// A photo of 800 × 600.
    PHAsset photo(const std::string& name)
    {
        writePng(folder.path(name + ".png"), rampPicture(800, 600, 70));
        return {name, folder.path(name + ".png"), 800, 600, 0};
    }
    /// Fails the running test when the handler is not called once, before the return.
    UIImage requestNow(const PHAsset& wanted, CGSize target, ContentMode mode, ResizeMode resizeMode)
    {
        int calls = 0;
        UIImage result;
        const PHImageRequestID identifier = manager.requestImageForAsset(
            wanted, target, mode, {.resizeMode = resizeMode, .synchronous = true}, [&](const UIImage& picture) {
                ++calls;
                result = picture;
            });
        EXPECT_EQ(identifier, PHInvalidImageRequestID);
        EXPECT_EQ(calls, 1);
        return result;
    }

    const TemporaryFolder folder;
    PHImageManager manager;
};

TEST_F(ImageRequests, TheTargetMeansWhatTheModesSay)
{
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    const struct {
        ContentMode mode;
        ResizeMode resizeMode;
        CGSize target;
        IntSize wanted;
    } table[] = {
        {ContentMode::AspectFill, ResizeMode::Exact, {100, 100}, {133, 100}},  // all of it, to the nearest pixel
        {ContentMode::AspectFill, ResizeMode::Exact, {99.6, 301}, {401, 301}}, // enlarged
        {ContentMode::AspectFit, ResizeMode::Exact, {100, 100}, {100, 75}},
        {ContentMode::AspectFit, ResizeMode::Exact, {0.2, 0.2}, {1, 1}},
        {ContentMode::AspectFill, ResizeMode::Fast, {120, 120}, {160, 120}},
        {ContentMode::AspectFit, ResizeMode::Fast, {800, 900}, {400, 300}},
        {ContentMode::AspectFill, ResizeMode::None, {100, 100}, {400, 300}},
        {ContentMode::AspectFill, ResizeMode::Exact, PHImageManagerMaximumSize, {400, 300}},
        {ContentMode::AspectFill, ResizeMode::Exact, {kNaN, 100}, {400, 300}},
        {ContentMode::AspectFill, ResizeMode::Exact, {1e30, 1e30}, {400, 300}}, // more than memory is given for
    };
    const PHAsset picture = ramp(400, 300);
    for (const auto& c : table) {
        const UIImage result = requestNow(picture, c.target, c.mode, c.resizeMode);
        EXPECT_EQ(result.pixelSize(), c.wanted);
    }
    writeFile(folder.path("text.jpg"), "not a picture");
    EXPECT_FALSE(requestNow(asset(folder.path("text.jpg")), {20, 15}, ContentMode::AspectFill, ResizeMode::Exact));
}

TEST_F(ImageRequests, AnExactFillShowsAllUpToEveryEdge)
{
    const CGImage result = requestNow(ramp(400, 300), {100, 100}, ContentMode::AspectFill, ResizeMode::Exact).cgImage();
    for (const int place : {0, 132})
        EXPECT_NEAR(pixelAt(result, place, 50)[0], (place * 400 / 133.0 + 1) / 400 * 255, 1.5);
    for (const int place : {0, 99})
        EXPECT_NEAR(pixelAt(result, 50, place)[1], (place * 3 + 1) / 300.0 * 255, 1);
}

TEST_F(ImageRequests, PicturesComeUpright)
{
    const UIImage result = requestNow(asset(flagFile(6)), {32, 24}, ContentMode::AspectFill, ResizeMode::Exact);
    EXPECT_EQ(result.pixelSize(), (IntSize{32, 24}));
    EXPECT_EQ(result.imageOrientation(), UIImageOrientation::Up);
    EXPECT_TRUE(showsFlag(result.cgImage()));
}

TEST_F(ImageRequests, OthersAnswerOnTheMainQueueUnlessCancelled)
{
    DispatchQueue::main().bindToCurrentThread();
    const PHAsset picture = ramp(40, 30);
    int calls = 0;
    const auto request = [&](PHImageManager& by, CGSize target) {
        return by.requestImageForAsset(picture, target, ContentMode::AspectFill,
                                       {.deliveryMode = PHImageRequestOptionsDeliveryMode::HighQualityFormat},
                                       [&](const UIImage& answer) {
                                           ++calls;
                                           EXPECT_TRUE(answer);
                                           EXPECT_TRUE(DispatchQueue::main().isCurrent());
                                       });
    };
    // Both the small picture and the whole one go this way.
    for (const CGSize target : {CGSize{20, 15}, PHImageManagerMaximumSize}) {
        calls = 0;
        EXPECT_NE(request(manager, target), PHInvalidImageRequestID);
        EXPECT_EQ(calls, 0);
        EXPECT_TRUE(DispatchQueue::main().runUntilIdle(20));
        EXPECT_EQ(calls, 1);

        manager.cancelImageRequest(request(manager, target));
        {
            PHImageManager passing;
            request(passing, target);
        }
        EXPECT_TRUE(DispatchQueue::main().runUntilIdle(20));
        EXPECT_EQ(calls, 1);
    }
}

TEST_F(ImageRequests, TheNewestThumbnailComesFirstAndNobodyHearsWhatIsCancelled)
{
    std::string order;
    std::vector<PHImageRequestID> requests;
    std::vector<std::weak_ptr<int>> cells;
    {
        BusyWorkers workers;
        for (const char* name : {"a", "b", "c", "d"}) {
            const auto cell = std::make_shared<int>();
            cells.push_back(cell);
            requests.push_back(manager.requestImageForAsset(
                photo(name), {50, 50}, ContentMode::AspectFill, {},
                [&order, cell, name](const UIImage& result) { order += result ? name : "-"; }));
        }
        manager.cancelImageRequest(requests[2]); // it waits
        workers.runOne();
        manager.cancelImageRequest(requests[0]); // its answer is on the way
        EXPECT_TRUE(cells[0].expired() && cells[2].expired());
    }
    EXPECT_EQ(order, "db");
}

TEST_F(ImageRequests, AnOpportunisticOneHearsFirstWhatIsAtHand)
{
    const PHAsset heic = asset(testData("pictures/heic-thumbnail.heic")); // 64 × 48, with one of 32 × 24
    const PHAsset large = photo("a");
    requestNow(large, {100, 100}, ContentMode::AspectFill, ResizeMode::Fast);
    const struct {
        PHAsset asset;
        CGSize target;
        DeliveryMode delivery;
        std::vector<IntSize> wanted;
    } table[] = {
        {heic, {50, 40}, DeliveryMode::Opportunistic, {{32, 24}, {53, 40}}},
        {heic, {50, 41}, DeliveryMode::HighQualityFormat, {{55, 41}}},
        {heic, {2000, 2000}, DeliveryMode::Opportunistic, {{55, 41}, {64, 48}}},    // of before
        {large, {600, 600}, DeliveryMode::Opportunistic, {{400, 300}, {800, 600}}}, // kept on disk
        {large, {100, 100}, DeliveryMode::Opportunistic, {{133, 100}}},
    };
    for (const auto& c : table) {
        SCOPED_TRACE(c.target.width);
        std::vector<IntSize> heard;
        DispatchSemaphore first; // before it, whole photos are not read: theirs would be the only answer
        pictureQueue().async([&] { first.wait(20); });
        manager.requestImageForAsset(c.asset, c.target, ContentMode::AspectFill, {.deliveryMode = c.delivery},
                                     [&](const UIImage& result) {
                                         heard.push_back(result.pixelSize());
                                         first.signal();
                                     });
        EXPECT_TRUE(DispatchQueue::main().runUntilIdle(20));
        EXPECT_EQ(heard, c.wanted);
        pictureQueue().sync([] {});
    }
}

TEST_F(ImageRequests, MoreThanMemoryAllowsComesAsLargeAsItDoes)
{
    writePng(folder.path("noise.png"), noisePicture(400, 300, CGImageAlphaInfo::NoneSkipLast));
    const PHAsset picture = asset(folder.path("noise.png"));
    const auto sizeWithin = [&](std::size_t bytes, CGSize target) {
        UIImage result;
        manager.requestImageForAsset(picture, target, ContentMode::AspectFit,
                                     {.synchronous = true, .memoryLimit = bytes},
                                     [&](const UIImage& answer) { result = answer; });
        return result.pixelSize();
    };
    EXPECT_EQ(sizeWithin(1'000'000, {3000, 3000}), (IntSize{400, 300}));
    EXPECT_EQ(sizeWithin(250'000, {3000, 3000}), (IntSize{200, 150}));
    EXPECT_EQ(sizeWithin(250'000, PHImageManagerMaximumSize), (IntSize{0, 0}));
}

TEST_F(ImageRequests, WhatIsMadeAheadIsThere)
{
    const PHAsset first = photo("a");
    const PHAsset second = photo("b");
    {
        PHCachingImageManager ahead;
        BusyWorkers workers;
        ahead.startCachingImagesForAssets({first}, {100, 100}, ContentMode::AspectFill, {});
        PHCachingImageManager().startCachingImagesForAssets({second}, {100, 100}, ContentMode::AspectFill, {});
    }
    for (const PHAsset& asset : {first, second})
        disguise(asset.path, "no picture any more");
    EXPECT_TRUE(requestNow(first, {100, 100}, ContentMode::AspectFill, ResizeMode::Fast));
    EXPECT_FALSE(requestNow(second, {100, 100}, ContentMode::AspectFill, ResizeMode::Fast)) << "stopped before";
}

} // namespace
} // namespace lamina::test
