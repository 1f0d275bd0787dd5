#include "platform/photos/PhotoLoad.h"
#include "TestPaths.h"

#include "CommandRunner.h"
#include "TestPictures.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/DispatchSemaphore.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <gtest/gtest.h>
#include <optional>
#include <thread>

namespace lamina {
namespace {

const std::string kTurned = test::testData("pictures/exif-6.jpg"); ///< stored lying, shown upright
const std::string kLarge = test::samples("meadow.jpg");            ///< 2000 × 1500

class PhotoLoading : public testing::Test {
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
    std::optional<Result<UIImage>> load(PhotoSource source, int shortSide = 0)
    {
        answer.reset();
        const auto reading = begin(std::move(source), shortSide);
        EXPECT_FALSE(answer) << "the answer comes on a later turn";
        settle();
        return answer;
    }

    const test::TemporaryFolder folder;
    int answers = 0;
    std::optional<Result<UIImage>> answer;
};

TEST_F(PhotoLoading, APhotoArrivesUprightFromAFileOrFromBytes)
{
    const std::string content = test::readFile(kTurned);
    for (const PhotoSource& source :
         {PhotoSource::fromFile(kTurned), PhotoSource::fromBytes({content.begin(), content.end()}, "pasted")}) {
        SCOPED_TRACE(source.name);
        const auto photo = load(source);
        ASSERT_TRUE(photo && photo->ok());
        EXPECT_EQ((*photo)->imageOrientation(), UIImageOrientation::Up);
        // The flag that all pictures of the tests show: red and green above, blue and yellow below.
        const CGImage& image = (*photo)->cgImage();
        const int x = image.width() / 4;
        const int y = image.height() / 4;
        EXPECT_LE(test::difference(test::pixelAt(image, x, y), {220, 40, 30, 255}), 3);
        EXPECT_LE(test::difference(test::pixelAt(image, 3 * x, y), {30, 170, 60, 255}), 3);
        EXPECT_LE(test::difference(test::pixelAt(image, x, 3 * y), {40, 60, 200, 255}), 3);
    }
    EXPECT_EQ(answers, 2);
}

TEST_F(PhotoLoading, ALargePhotoIsReducedNoFurtherThanAllowed)
{
    const auto photo = load(PhotoSource::fromFile(kLarge), 400);
    ASSERT_TRUE(photo && photo->ok());
    const IntSize size = (*photo)->pixelSize();
    EXPECT_GE(std::min(size.width, size.height), 400);
    EXPECT_LT(std::min(size.width, size.height), 800);
}

TEST_F(PhotoLoading, WhatCannotBeReadSaysWhyUnderItsShownName)
{
    test::writeFile(folder.path("notes.jpg"), "Dear diary, this is no photo at all.");
    test::writeFile(folder.path("empty.jpg"), "");
    const struct {
        PhotoSource source;
        const char* name;
        const char* cause;
    } table[] = {
        {PhotoSource::fromFile(folder.path("notes.jpg")), "notes.jpg", "not a picture"},
        {PhotoSource::fromFile(folder.path("empty.jpg")), "empty.jpg", "the file is empty"},
        {PhotoSource::fromFile(folder.path("gone.jpg")), "gone.jpg", "no such file"},
        {PhotoSource::fromFile(folder.path()), nullptr, "is a folder"},
        {PhotoSource::fromBytes({}, "pasted"), "pasted", "the file is empty"},
        {PhotoSource{}, "", "no such file"},
    };
    for (const auto& c : table) {
        SCOPED_TRACE(c.cause);
        const auto photo = load(c.source);
        ASSERT_TRUE(photo && !photo->ok());
        EXPECT_EQ(photo->error().cause, c.cause);
        if (c.name != nullptr) {
            EXPECT_EQ(photo->error().subject, c.name);
        }
    }
}

/// Processor seconds of this process: unlike the clock on the wall they don't grow while others compute.
double processorSeconds()
{
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

TEST_F(PhotoLoading, CancellingEndsADecodeInItsMiddle)
{
    test::writePng(
        folder.path("large.png"), test::makePicture(5000, 4000, [](int x, int y) {
            return test::Rgba{static_cast<std::uint8_t>(x ^ y), static_cast<std::uint8_t>(x * y >> 8), 9, 255};
        }));
    const PhotoSource source = PhotoSource::fromFile(folder.path("large.png"));
    double start = processorSeconds();
    const auto whole = load(source);
    const double full = processorSeconds() - start;
    ASSERT_TRUE(whole && whole->ok());
    answer.reset();
    answers = 0;

    start = processorSeconds();
    const auto reading = begin(source);
    while (processorSeconds() - start < full / 5)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    reading->cancel();
    reading->cancel();
    settle(); // the queue is idle only when the reading has ended
    EXPECT_LT(processorSeconds() - start, full * 0.7);
    EXPECT_EQ(answers, 0);

    EXPECT_TRUE(load(PhotoSource::fromFile(kTurned))) << "the next photo is read as ever";
}

TEST_F(PhotoLoading, AnAnswerThatIsUnderWayIsDroppedOnceCancelled)
{
    DispatchSemaphore answered;
    DispatchQueue::main().setWakeHandler([&] { answered.signal(); });
    for (const bool destroyed : {false, true}) {
        DispatchQueue::main().drain(); // from here on new work wakes anew
        auto reading = begin(PhotoSource::fromFile(kTurned));
        ASSERT_TRUE(answered.wait(20));
        if (destroyed)
            reading.reset();
        else
            reading->cancel();
        settle();
        EXPECT_EQ(answers, 0);
    }
    DispatchQueue::main().setWakeHandler({});
}

} // namespace
} // namespace lamina
