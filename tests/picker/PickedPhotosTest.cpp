#include "picker/PickedPhotos.h"

#include "CommandRunner.h"
#include "TestPictures.h"
#include "platform/base/CGGeometry.h"

#include <atomic>
#include <cstddef>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace lamina::test {
namespace {

TEST(PickedPhotos, CoverTheScreenAndKeepTheirPixelsForTheDeepestZoom)
{
    const struct {
        CGSize own, covered;
        double shortSide;
        CGSize expected;
    } table[] = {
        {{4000, 3000}, {1005, 1881}, 2250, {3000, 2250}}, // what the zoom needs
        {{3000, 4000}, {3720, 2280}, 2580, {3000, 4000}}, // nor is it enlarged for a large window,
        {{1500, 1000}, {3720, 6480}, 2000, {3000, 2000}}, // or no further than for the zoom
        {{1000, 800}, {180, 240}, 2250, {1000, 800}},     // no more than there is
        {{40, 30}, {180, 240}, 2250, {320, 240}},         // but for what is to be covered
    };
    for (const auto& c : table)
        EXPECT_EQ(pickedPhotoSize(c.own, {c.covered, c.shortSide}), c.expected)
            << c.own.width << ' ' << c.covered.width;
}

TEST(PickedPhotos, AreReadSideBySideAndComeInTheirOrder)
{
    const TemporaryFolder folder;
    std::vector<PhotoSource> photos;
    for (int index = 0; index < 5; ++index) { // the first take longest
        const std::string path = folder.path(std::to_string(index) + ".png");
        writePng(path, rampPicture(1200 - 280 * index, 900 - 200 * index, static_cast<std::uint8_t>(40 * index)));
        photos.push_back(PhotoSource::fromFile(path));
    }
    writeFile(folder.path("text\n.png"), "no picture");
    photos.insert(photos.begin() + 2, PhotoSource::fromFile(folder.path("text\n.png")));
    std::atomic<bool> cancelled = false;
    const PickedPhotos read = loadPickedPhotos(photos, {{10, 10}, 5000}, cancelled);
    ASSERT_EQ(read.images.size(), 5u);
    for (std::size_t index = 0; index < 5; ++index)
        EXPECT_EQ(pixelAt(read.images[index].cgImage(), 5, 5)[2], 40 * index);
    ASSERT_EQ(read.failures.size(), 1u);
    EXPECT_EQ(read.failures[0].message(), "text\uFFFD.png: not a picture");
    cancelled = true;
    EXPECT_TRUE(loadPickedPhotos(photos, {{10, 10}, 5000}, cancelled).images.empty());
}

} // namespace
} // namespace lamina::test
