#include "platform/photos/PHImageManager.h"

#include "CommandRunner.h"
#include "Flag.h"
#include "platform/base/DispatchQueue.h"

#include <cmath>
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
        {ContentMode::AspectFill, ResizeMode::Exact, {100, 100}, {100, 100}},
        {ContentMode::AspectFill, ResizeMode::Exact, {99.6, 301}, {100, 301}}, // enlarged
        {ContentMode::AspectFit, ResizeMode::Exact, {100, 100}, {100, 75}},
        {ContentMode::AspectFit, ResizeMode::Exact, {800, 900}, {800, 600}},
        {ContentMode::AspectFit, ResizeMode::Exact, {0.2, 0.2}, {1, 1}},
        {ContentMode::AspectFill, ResizeMode::Fast, {120, 120}, {160, 120}},
        {ContentMode::AspectFit, ResizeMode::Fast, {800, 900}, {400, 300}},
        {ContentMode::AspectFill, ResizeMode::None, {100, 100}, {400, 300}},
        {ContentMode::AspectFill, ResizeMode::Exact, PHImageManagerMaximumSize, {400, 300}},
        {ContentMode::AspectFill, ResizeMode::Exact, {kNaN, 100}, {400, 300}},
        {ContentMode::AspectFill, ResizeMode::Exact, {1e30, 1e30}, {0, 0}}, // more than memory is given for
    };
    const PHAsset picture = ramp(400, 300);
    for (const auto& c : table) {
        SCOPED_TRACE(testing::Message() << c.target.width << " × " << c.target.height);
        const UIImage result = requestNow(picture, c.target, c.mode, c.resizeMode);
        EXPECT_EQ(result.pixelSize(), c.wanted);
        EXPECT_EQ(result.scale(), 1);
    }
    writeFile(folder.path("text.jpg"), "not a picture");
    EXPECT_FALSE(requestNow(asset(folder.path("text.jpg")), {20, 15}, ContentMode::AspectFill, ResizeMode::Exact));
}

TEST_F(ImageRequests, AnExactFillShowsTheMiddleUpToEveryEdge)
{
    const UIImage result = requestNow(ramp(400, 300), {100, 100}, ContentMode::AspectFill, ResizeMode::Exact);
    // Three pixels of the picture make one; 50 of them are cut off on the left.
    const auto level = [](double place, double length) {
        return static_cast<std::uint8_t>(std::lround(place / length * 255));
    };
    const CGImage wanted = makePicture(100, 100, [&](int x, int y) {
        return Rgba{level((x + 0.5) * 3 + 50, 400), level((y + 0.5) * 3, 300), 50, 255};
    });
    EXPECT_TRUE(imagesMatch(result.cgImage(), wanted, 1));
}

TEST_F(ImageRequests, PicturesComeUpright)
{
    for (const ResizeMode resizeMode : {ResizeMode::None, ResizeMode::Exact}) {
        const UIImage result = requestNow(asset(flagFile(6)), {32, 24}, ContentMode::AspectFill, resizeMode);
        EXPECT_EQ(result.pixelSize(), resizeMode == ResizeMode::None ? (IntSize{64, 48}) : (IntSize{32, 24}));
        EXPECT_EQ(result.imageOrientation(), UIImageOrientation::Up);
        EXPECT_TRUE(showsFlag(result.cgImage()));
    }
}

TEST_F(ImageRequests, OthersAnswerOnTheMainQueueUnlessCancelled)
{
    DispatchQueue::main().bindToCurrentThread();
    const PHAsset picture = ramp(40, 30);
    int calls = 0;
    UIImage result;
    const auto request = [&](PHImageManager& by, const PHAsset& wanted, CGSize target) {
        return by.requestImageForAsset(wanted, target, ContentMode::AspectFill, {}, [&](const UIImage& answer) {
            ++calls;
            result = answer;
            EXPECT_TRUE(DispatchQueue::main().isCurrent());
        });
    };
    // Both the small picture and the whole one go this way.
    for (const CGSize target : {CGSize{20, 15}, PHImageManagerMaximumSize}) {
        calls = 0;
        EXPECT_NE(request(manager, picture, target), PHInvalidImageRequestID);
        EXPECT_EQ(calls, 0);
        EXPECT_TRUE(DispatchQueue::main().runUntilIdle(20));
        EXPECT_EQ(calls, 1);
        EXPECT_EQ(result.pixelSize(), target.width > 0 ? (IntSize{20, 15}) : (IntSize{40, 30}));

        manager.cancelImageRequest(request(manager, picture, target));
        {
            PHImageManager passing;
            request(passing, picture, target);
        }
        manager.cancelImageRequest(4711);
        EXPECT_TRUE(DispatchQueue::main().runUntilIdle(20));
        EXPECT_EQ(calls, 1);
    }
    request(manager, asset(folder.path("none.jpg")), {20, 15});
    EXPECT_TRUE(DispatchQueue::main().runUntilIdle(20));
    EXPECT_EQ(calls, 2);
    EXPECT_FALSE(result);
}

} // namespace
} // namespace lamina::test
