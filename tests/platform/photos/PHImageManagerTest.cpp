#include "platform/photos/PHImageManager.h"

#include "CommandRunner.h"
#include "Flag.h"
#include "platform/base/DispatchQueue.h"

#include <gtest/gtest.h>
#include <limits>

namespace lamina::test {
namespace {

using ContentMode = PHImageContentMode;
using ResizeMode = PHImageRequestOptionsResizeMode;

class ImageRequests : public testing::Test {
protected:
    static PHAsset asset(const std::string& path) { return {path, path, 0, 0, 0}; }
    PHAsset ramp(int width, int height)
    {
        writePng(folder.path("ramp.png"), rampPicture(width, height, 50));
        return {"ramp", folder.path("ramp.png"), width, height, 0};
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
        {ContentMode::AspectFill, ResizeMode::Exact, {100, 100}, {134, 100}},  // all of it, up to the next pixel
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
    for (const int place : {0, 133})
        EXPECT_NEAR(pixelAt(result, place, 50)[0], (place * 400 / 134.0 + 1) / 400 * 255, 1.5);
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

} // namespace
} // namespace lamina::test
