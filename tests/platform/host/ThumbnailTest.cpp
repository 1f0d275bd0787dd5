#include "platform/photos/Thumbnail.h"
#include "TestPaths.h"

#include "CommandRunner.h"
#include "TestPictures.h"

#include <gtest/gtest.h>

namespace lamina::test {
namespace {

std::string sample(const std::string& name)
{
    return testData(std::string("pictures/") + name);
}

// The flag of four flat quarters, 64 × 48 when shown, stored in each of the eight turns.
TEST(Thumbnail, IsTheMiddleSquareUpright)
{
    for (int tag = 1; tag <= 8; ++tag) {
        SCOPED_TRACE(tag);
        const Result<UIImage> picture = loadThumbnail(sample("exif-" + std::to_string(tag) + ".jpg"), 16);
        ASSERT_TRUE(picture);
        ASSERT_EQ(picture->cgImage().size(), (IntSize{16, 16}));
        EXPECT_EQ(picture->imageOrientation(), UIImageOrientation::Up);
        const CGImage& shown = picture->cgImage();
        EXPECT_LE(difference(pixelAt(shown, 4, 4), {220, 40, 30, 255}), 4);
        EXPECT_LE(difference(pixelAt(shown, 11, 4), {30, 170, 60, 255}), 4);
        EXPECT_LE(difference(pixelAt(shown, 4, 11), {40, 60, 200, 255}), 4);
        EXPECT_LE(difference(pixelAt(shown, 11, 11), {240, 220, 40, 255}), 4);
    }
}

TEST(Thumbnail, CutsBothEndsAlikeAndEnlargesNothing)
{
    const TemporaryFolder folder;
    writePng(folder.path("wide.png"), rampPicture(300, 100, 9));
    const Result<UIImage> small = loadThumbnail(folder.path("wide.png"), 50);
    ASSERT_TRUE(small);
    ASSERT_EQ(small->cgImage().size(), (IntSize{50, 50}));
    // Two pixels make one; 100 of 300 are cut off on the left. Red grows by 255 over 300 pixels.
    EXPECT_NEAR(pixelAt(small->cgImage(), 0, 25)[0], 101.0 / 300 * 255, 1.5);
    EXPECT_NEAR(pixelAt(small->cgImage(), 49, 25)[0], 199.0 / 300 * 255, 1.5);
    const Result<UIImage> whole = loadThumbnail(folder.path("wide.png"), 400);
    ASSERT_TRUE(whole);
    EXPECT_EQ(whole->cgImage().size(), (IntSize{100, 100}));

    writePng(folder.path("line.png"), rampPicture(1, 300, 9));
    const Result<UIImage> line = loadThumbnail(folder.path("line.png"), 64);
    ASSERT_TRUE(line);
    EXPECT_EQ(line->cgImage().size(), (IntSize{1, 1}));
}

TEST(Thumbnail, KeepsClearPartsAndNamesCauses)
{
    const Result<UIImage> clear = loadThumbnail(sample("png-rgba8.png"), 16);
    ASSERT_TRUE(clear);
    EXPECT_EQ(clear->cgImage().alphaInfo(), CGImageAlphaInfo::PremultipliedLast);
    EXPECT_LE(difference(pixelAt(clear->cgImage(), 11, 11), {60, 55, 10, 64}), 1); // 64/255 of (240, 220, 40)

    EXPECT_FALSE(loadThumbnail("/nowhere.jpg", 16));
    EXPECT_FALSE(loadThumbnail(sample("exif-1.jpg"), 0));
    const std::atomic<bool> cancelled = true;
    const Result<UIImage> stopped = loadThumbnail(sample("exif-1.jpg"), 16, &cancelled);
    ASSERT_FALSE(stopped);
    EXPECT_EQ(stopped.error().cause, "cancelled");
}

} // namespace
} // namespace lamina::test
