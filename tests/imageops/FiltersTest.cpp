// What lanes, threads and layouts must not change. The formulas themselves are checked through the command, beside
// numpy.

#include "EveryProcessor.h"
#include "TestPictures.h"
#include "imageops/ImageFilters.h"
#include "imageops/ImageGeometry.h"

#include <algorithm>
#include <limits>

namespace lamina::test {
namespace {

using Alpha = CGImageAlphaInfo;

struct Named {
    const char* name;
    std::function<UIImage(const UIImage&)> operation;
};

// Those that keep scale and orientation, then those that give a plain picture.
const Named kKeeping[] = {
    {"brighten", [](const UIImage& image) { return brightenWithValue(image, 33.3F); }},
    {"contrast", [](const UIImage& image) { return contrastAdjustmentWithValue(image, 77.7F); }},
    {"sepia", sepia},
};
const Named kPlain[] = {
    {"gamma", [](const UIImage& image) { return gammaCorrectionWithValue(image, 2.3F); }},
    {"invert", invert},
    {"opacity", [](const UIImage& image) { return opacity(image, 0.4F); }},
    {"edges", [](const UIImage& image) { return edgeDetectionWithBias(image, 99); }},
    {"emboss", [](const UIImage& image) { return embossWithBias(image, 60); }},
    {"sharpen", [](const UIImage& image) { return sharpenWithBias(image, -200); }},
    {"unsharpen", [](const UIImage& image) { return unsharpenWithBias(image, 3); }},
    {"blur", [](const UIImage& image) { return gaussianBlurWithBias(image, std::numeric_limits<long>::max()); }},
};

std::vector<Named> pointFilters()
{
    std::vector<Named> all(std::begin(kKeeping), std::end(kKeeping));
    all.insert(all.end(), std::begin(kPlain), std::end(kPlain));
    return all;
}

/// Pictures of sizes below, at and beyond the number of lanes, with and without alpha.
std::vector<UIImage> noiseOfManySizes()
{
    std::vector<UIImage> all;
    for (const IntSize size : {IntSize{1, 1}, {1, 40}, {3, 3}, {5, 5}, {17, 9}, {64, 7}, {331, 203}}) {
        for (const Alpha alpha : {Alpha::NoneSkipLast, Alpha::PremultipliedLast, Alpha::Last})
            all.emplace_back(noisePicture(paddedLayout(size.width, size.height, alpha)));
    }
    return all;
}

/// All bytes that a filter makes, with those of its mask.
std::vector<std::uint8_t> allBytes(const UIImage& image)
{
    std::vector<std::uint8_t> bytes = bytesOf(image.cgImage());
    if (const CGImage* mask = image.cgImage().mask()) {
        const std::vector<std::uint8_t> more = bytesOf(*mask);
        bytes.insert(bytes.end(), more.begin(), more.end());
    }
    return bytes;
}

TEST(Filters, GiveTheSameBytesOnEveryProcessor)
{
    std::vector<Named> filters = pointFilters();
    filters.push_back({"grayscale", grayscale});
    filters.push_back({"left", [](const UIImage& image) { return rotateInDegrees(image, 90); }});
    filters.push_back({"flipped", horizontalFlip});
    const std::vector<UIImage> pictures = noiseOfManySizes();
    for (const Named& filter : filters) {
        std::vector<std::vector<std::uint8_t>> wanted;
        onEveryProcessor([&](const std::string& processor) {
            std::vector<std::vector<std::uint8_t>> got;
            for (const UIImage& image : pictures)
                got.push_back(allBytes(filter.operation(image)));
            if (wanted.empty())
                wanted = got;
            EXPECT_TRUE(got == wanted) << filter.name << " on " << processor;
        });
    }
}

TEST(Filters, ReadEachLayoutAndMakeSkippedBytesOpaque)
{
    // The same colours in two layouts, the skipped byte arbitrary.
    const UIImage skipped(solidPicture(9, 5, {30, 20, 10, 77}, Alpha::NoneSkipLast));
    const UIImage little(
        makePicture(paddedLayout(9, 5, bitmapInfo(Alpha::NoneSkipFirst, kCGBitmapByteOrder32Little)), [](int, int) {
            return Rgba{10, 20, 30, 77};
        }));
    for (const Named& filter : pointFilters()) {
        const std::vector<Rgba> wanted = pixelsOf(filter.operation(skipped).cgImage());
        EXPECT_EQ(wanted[22][0], filter.name == std::string("opacity") ? 102 : 255) << filter.name;
        EXPECT_EQ(pixelsOf(filter.operation(little).cgImage()), wanted) << filter.name;
    }
}

TEST(Filters, WorkOnPointsAndCarryScaleAndOrientationWhereTheySaySo)
{
    // 75.5 × 100 points.
    const UIImage source(noisePicture(200, 151, Alpha::NoneSkipLast), 2, UIImageOrientation::Left);
    for (const Named& filter : pointFilters()) {
        const UIImage result = filter.operation(source);
        const bool keeps = std::ranges::any_of(kKeeping, [&](const Named& k) { return k.name == filter.name; });
        EXPECT_EQ(result.cgImage().size(), (IntSize{75, 100})) << filter.name;
        EXPECT_EQ(result.scale(), keeps ? 2 : 1) << filter.name;
        EXPECT_EQ(result.imageOrientation(), keeps ? UIImageOrientation::Left : UIImageOrientation::Up) << filter.name;
    }
    EXPECT_TRUE(autoEnhance(source).isIdenticalTo(source));
    EXPECT_TRUE(redEyeCorrection(source).isIdenticalTo(source));
    const UIImage gray = grayscale(source); // counts pixels, and has room for three bytes each
    EXPECT_EQ(gray.cgImage().size(), (IntSize{151, 200}));
    EXPECT_EQ(gray.scale(), 2);
    EXPECT_EQ(gray.imageOrientation(), UIImageOrientation::Left);
    EXPECT_EQ(gray.cgImage().bytesPerRow(), 3u * 151);
    EXPECT_EQ(gray.cgImage().row(0)[151], 0);
    EXPECT_EQ(gray.cgImage().mask()->bytesPerRow(), 151u);
}

TEST(Filters, GiveNoPictureForNoneAndForArgumentsThatAreNoNumbers)
{
    const UIImage source(noisePicture(5, 5, Alpha::Last));
    const UIImage tooSmall(source.cgImage(), 6);
    for (const Named& filter : pointFilters()) {
        EXPECT_FALSE(filter.operation(UIImage())) << filter.name;
        EXPECT_FALSE(filter.operation(tooSmall)) << filter.name;
    }
    EXPECT_FALSE(grayscale(UIImage()));
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    for (const float bad : {std::numeric_limits<float>::quiet_NaN(), kInfinity, -kInfinity}) {
        EXPECT_FALSE(brightenWithValue(source, bad));
        EXPECT_FALSE(contrastAdjustmentWithValue(source, bad));
        EXPECT_FALSE(gammaCorrectionWithValue(source, bad));
        EXPECT_FALSE(opacity(source, bad));
    }
}

} // namespace
} // namespace lamina::test
