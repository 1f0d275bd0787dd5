#include "platform/photos/PHImageManager.h"
#include "TestPaths.h"

#include "CommandRunner.h"
#include "TestPictures.h"
#include "platform/base/DispatchQueue.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>

namespace lamina::test {
namespace {

using ContentMode = PHImageContentMode;
using ResizeMode = PHImageRequestOptionsResizeMode;

class ImageRequests : public testing::Test {
protected:
    PHAsset asset(const std::string& path) { return {path, path, 0, 0, 0}; }
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
}

TEST_F(ImageRequests, AnExactFillShowsTheMiddleUpToEveryEdge)
{
    const UIImage result = requestNow(ramp(400, 300), {100, 100}, ContentMode::AspectFill, ResizeMode::Exact);
    ASSERT_EQ(result.pixelSize(), (IntSize{100, 100}));
    for (const int x : {0, 1, 50, 98, 99}) {
        for (const int y : {0, 1, 50, 98, 99}) {
            // Three pixels of the picture make one; 50 of them are cut off on the left.
            const auto level = [](double place, double length) {
                return static_cast<std::uint8_t>(std::lround(place / length * 255));
            };
            const Rgba wanted{level((x + 0.5) * 3 + 50, 400), level((y + 0.5) * 3, 300), 50, 255};
            EXPECT_LE(difference(pixelAt(result.cgImage(), x, y), wanted), 1) << x << ", " << y;
        }
    }
}

// The flag lies on its side in its file: stored 48 × 64, shown 64 × 48.
TEST_F(ImageRequests, PicturesComeUpright)
{
    const std::string path = testData("pictures/exif-6.jpg");
    for (const ResizeMode resizeMode : {ResizeMode::None, ResizeMode::Exact}) {
        const UIImage result = requestNow(asset(path), {32, 24}, ContentMode::AspectFill, resizeMode);
        ASSERT_EQ(result.pixelSize(), resizeMode == ResizeMode::None ? (IntSize{64, 48}) : (IntSize{32, 24}));
        EXPECT_EQ(result.imageOrientation(), UIImageOrientation::Up);
        const int right = result.pixelSize().width - 4;
        EXPECT_LE(difference(pixelAt(result.cgImage(), 3, 3), {220, 40, 30, 255}), 6);
        EXPECT_LE(difference(pixelAt(result.cgImage(), right, 3), {30, 170, 60, 255}), 6);
    }
}

TEST_F(ImageRequests, OthersAnswerOnTheMainQueueUnlessCancelled)
{
    const PHAsset picture = ramp(40, 30);
    int calls = 0;
    UIImage result;
    const auto take = [&](const UIImage& answer) {
        ++calls;
        result = answer;
        EXPECT_TRUE(DispatchQueue::main().isCurrent());
    };
    const auto request = [&](PHImageManager& by, const PHAsset& wanted) {
        return by.requestImageForAsset(wanted, {20, 15}, ContentMode::AspectFill, {}, take);
    };
    DispatchQueue::main().bindToCurrentThread();
    EXPECT_NE(request(manager, picture), PHInvalidImageRequestID);
    EXPECT_EQ(calls, 0);
    EXPECT_TRUE(DispatchQueue::main().runUntilIdle(20));
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(result.pixelSize(), (IntSize{20, 15}));

    manager.cancelImageRequest(request(manager, picture));
    {
        PHImageManager passing;
        request(passing, picture);
    }
    manager.cancelImageRequest(4711);
    EXPECT_TRUE(DispatchQueue::main().runUntilIdle(20));
    EXPECT_EQ(calls, 1);

    request(manager, asset(folder.path("none.jpg")));
    EXPECT_TRUE(DispatchQueue::main().runUntilIdle(20));
    EXPECT_EQ(calls, 2);
    EXPECT_FALSE(result);
}

TEST_F(ImageRequests, WhatIsNoPictureComesEmpty)
{
    writeFile(folder.path("text.jpg"), "not a picture");
    EXPECT_FALSE(requestNow(asset(folder.path("text.jpg")), {20, 15}, ContentMode::AspectFill, ResizeMode::Exact));
    EXPECT_FALSE(requestNow(asset(""), {20, 15}, ContentMode::AspectFit, ResizeMode::None));
}

} // namespace
} // namespace lamina::test
