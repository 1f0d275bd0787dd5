// Photos on their way from file to screen: read, turned upright, reduced, given up.
#include "platform/photos/PhotoLoading.h"
#include "CommandRunner.h"
#include "Flag.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/DispatchSemaphore.h"
#include "platform/photos/PhotoLoad.h"
#include "platform/photos/PictureQueue.h"
#include "platform/photos/Thumbnail.h"

#include <ctime>
#include <gtest/gtest.h>
#include <utility>

namespace lamina::test {
namespace {

/// The picture queue at a stand until this lets it go.
struct QueueHeld {
    QueueHeld()
    {
        pictureQueue().async([this] { gate.wait(20); });
    }
    ~QueueHeld()
    {
        gate.signal();
        pictureQueue().sync([] {});
    }
    DispatchSemaphore gate;
};

class PhotoLoads : public testing::Test {
protected:
    void TearDown() override { settle(); }
    static void settle() { ASSERT_TRUE(DispatchQueue::main().runUntilIdle(60)); }

    std::unique_ptr<PhotoLoad> begin(PhotoSource source, int shortSide = 0)
    {
        return std::make_unique<PhotoLoad>(std::move(source), shortSide, [this](Result<UIImage> photo) {
            ++answers;
            answer = std::move(photo);
        });
    }
    Result<UIImage> load(PhotoSource source, int shortSide = 0)
    {
        const int before = answers;
        const auto reading = begin(std::move(source), shortSide);
        EXPECT_EQ(answers, before) << "the answer comes on a later turn";
        settle();
        EXPECT_EQ(answers, before + 1);
        return answer;
    }

    int answers = 0;
    Result<UIImage> answer = UIImage();
};

TEST_F(PhotoLoads, APhotoArrivesUprightAndReducedNoFurtherThanAllowed)
{
    const Result<UIImage> photo = load(PhotoSource::fromFile(flagFile(6)));
    ASSERT_TRUE(photo);
    EXPECT_EQ(photo->imageOrientation(), UIImageOrientation::Up);
    EXPECT_EQ(photo->pixelSize(), (IntSize{64, 48}));
    EXPECT_TRUE(showsFlag(photo->cgImage()));
    const Result<UIImage> large = load(PhotoSource::fromFile(samples("meadow.jpg")), 400); // 2000 × 1500
    ASSERT_TRUE(large);
    EXPECT_GE(large->pixelSize().height, 400);
    EXPECT_LT(large->pixelSize().height, 800);
}

TEST_F(PhotoLoads, WhatCannotBeReadSaysWhyUnderItsShownName)
{
    const std::atomic<bool> cancelled = true;
    const auto told = [](const PhotoSource& source, const DecodeOptions& options = {}) {
        const Result<UIImage> photo = loadUpright(source, options);
        return photo ? "a photo" : photo.error().subject + ": " + photo.error().cause;
    };
    EXPECT_EQ(told(PhotoSource::fromFile("/nowhere/gone.jpg")), "gone.jpg: no such file");
    EXPECT_EQ(told(PhotoSource::fromBytes({}, "pasted")), "pasted: the file is empty");
    EXPECT_EQ(told(PhotoSource::fromFile(flagFile(6)), {.cancelled = &cancelled}), "exif-6.jpg: cancelled");
}

TEST_F(PhotoLoads, OnesGivenUpCostNothingAndAnswerNothing)
{
    for (const bool destroyed : {false, true}) {
        auto reading = begin(PhotoSource::fromFile(flagFile(1)));
        pictureQueue().sync([] {}); // the answer is under way
        if (destroyed)
            reading.reset();
        else
            reading->cancel();
        settle();
        EXPECT_EQ(answers, 0);
    }

    const PhotoSource large = PhotoSource::fromFile(samples("meadow.jpg"));
    std::clock_t start = std::clock(); // processor time: it does not grow while other programs compute
    ASSERT_TRUE(load(large));
    const std::clock_t full = std::clock() - start;
    start = std::clock();
    {
        const QueueHeld held;
        begin(large)->cancel();
    }
    settle();
    EXPECT_LT(std::clock() - start, full / 2);
    EXPECT_EQ(answers, 1);
}

TEST_F(PhotoLoads, ShortWorkDoesNotWaitBehindAPhotoAndLeavingWaitsForIt)
{
    const QueueHeld held;
    DispatchSemaphore gate;
    std::atomic<bool> done = false;
    runShortPictureWork([&] { done = gate.wait(20); });
    EXPECT_FALSE(DispatchQueue::main().runUntilIdle(0.05));
    gate.signal();
    EXPECT_TRUE(DispatchQueue::main().runUntilIdle(10));
    EXPECT_TRUE(done);
}

TEST(Thumbnails, AreTheMiddleSquareUpright)
{
    for (int tag = 1; tag <= 8; ++tag) {
        SCOPED_TRACE(tag);
        const Result<UIImage> picture = loadThumbnail(flagFile(tag), 16);
        ASSERT_TRUE(picture);
        ASSERT_EQ(picture->cgImage().size(), (IntSize{16, 16}));
        EXPECT_EQ(picture->imageOrientation(), UIImageOrientation::Up);
        EXPECT_TRUE(showsFlag(picture->cgImage()));
    }
    EXPECT_FALSE(loadThumbnail(flagFile(1), 0));
}

TEST(Thumbnails, CutBothEndsAlikeAndEnlargeNothing)
{
    const TemporaryFolder folder;
    const auto thumbnail = [&](int width, int height, int side) {
        writePng(folder.path("ramp.png"), rampPicture(width, height, 9));
        const Result<UIImage> made = loadThumbnail(folder.path("ramp.png"), side);
        return made ? made->cgImage() : CGImage();
    };
    const CGImage small = thumbnail(300, 100, 50);
    ASSERT_EQ(small.size(), (IntSize{50, 50}));
    // Two pixels make one; 100 of 300 are cut off on the left. Red grows by 255 over 300 pixels.
    EXPECT_NEAR(pixelAt(small, 0, 25)[0], 101.0 / 300 * 255, 1.5);
    EXPECT_NEAR(pixelAt(small, 49, 25)[0], 199.0 / 300 * 255, 1.5);
    EXPECT_EQ(thumbnail(300, 100, 400).size(), (IntSize{100, 100}));
    EXPECT_EQ(thumbnail(1, 300, 64).size(), (IntSize{1, 1}));
}

} // namespace
} // namespace lamina::test
