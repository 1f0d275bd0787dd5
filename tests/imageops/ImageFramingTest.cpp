#include "imageops/ImageGeometry.h"

#include "GeometrySupport.h"
#include "imageops/DrawingSurface.h"
#include "platform/base/UIScreen.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace lamina::test {
namespace {

constexpr CGBitmapInfo kStraight = bitmapInfo(CGImageAlphaInfo::Last);
constexpr CGBitmapInfo kOpaque = bitmapInfo(CGImageAlphaInfo::NoneSkipLast);

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

UIImage flat(int width, int height, Bytes bytes, CGBitmapInfo info = kOpaque)
{
    return picture(width, height, info, [&](int, int) { return bytes; });
}

UIImage places(int width, int height, double scale = 1, UIImageOrientation orientation = UIImageOrientation::Up)
{
    return picture(
        width, height, kOpaque,
        [](int x, int y) {
            return Bytes{static_cast<std::uint8_t>(x), static_cast<std::uint8_t>(y), 0, 255};
        },
        scale, orientation);
}

TEST(Crop, AnchorsByMode)
{
    const UIImage image = places(100, 60);
    // 20 × 10 of 100 × 60: what remains is 80 × 50.
    const std::pair<int, int> corners[] = {{0, 0},   {40, 0}, {80, 0},  {0, 50}, {40, 50},
                                           {80, 50}, {0, 25}, {80, 25}, {40, 25}};
    for (int mode = 0; mode < 9; ++mode) {
        const UIImage part = cropToSize(image, {20, 10}, mode);
        ASSERT_EQ(part.cgImage().size(), (IntSize{20, 10})) << mode;
        const Bytes first = bytesAt(part, 0, 0);
        EXPECT_EQ(first[0], corners[mode].first) << mode;
        EXPECT_EQ(first[1], corners[mode].second) << mode;
    }
    for (const int mode : {-1, 9, 1000})
        EXPECT_EQ(bytesAt(cropToSize(image, {20, 10}, mode), 0, 0)[0], 0);
    EXPECT_TRUE(cropToSize(image, {20, 10}).cgImage().bytes().data() == image.cgImage().bytes().data());
}

TEST(Crop, SwapsStoredSidesAndCountsInPoints)
{
    const UIImage image = places(100, 60, 2, UIImageOrientation::Right);   // 30 × 50 points as shown
    const UIImage part = cropToSize(image, {10, 20}, CropModeBottomRight); // at (20, 30) points
    ASSERT_EQ(part.cgImage().size(), (IntSize{40, 20}));
    EXPECT_EQ(bytesAt(part, 0, 0), (Bytes{60, 40, 0, 255}));
    EXPECT_EQ(part.size(), (CGSize{10, 20}));
    EXPECT_EQ(part.imageOrientation(), UIImageOrientation::Right);
}

TEST(Crop, TakesPixelsWholeAndRefusesWhatLiesOutside)
{
    const UIImage image = places(10, 6);
    EXPECT_EQ(cropToSize(image, {10, 6}, CropModeCenter).cgImage().size(), (IntSize{10, 6}));
    EXPECT_EQ(cropToSize(image, {3.5, 1}, CropModeTopRight).cgImage().size(), (IntSize{4, 1})); // from 6.5
    EXPECT_EQ(cropToSize(places(100, 60, 3), {100.0 / 3, 20}).cgImage().size(), (IntSize{100, 60}));
    for (const CGSize size : {CGSize{0, 5}, CGSize{-1, 5}, CGSize{kNaN, 5}, CGSize{5, kInfinity}, CGSize{1e-9, 1},
                              CGSize{1e12, 3}, CGSize{10, 6.1}})
        EXPECT_FALSE(cropToSize(image, size));
    EXPECT_FALSE(cropToSize(UIImage(), {1, 1}, 8));

    const UIImage masked(
        image.cgImage().withMask(grayPicture(10, 6, [](int x, int) { return x < 5 ? 255 : 0; }).cgImage()));
    const UIImage part = cropToSize(masked, {5, 6});
    EXPECT_EQ(bytesAt(part, 0, 0)[3], 0); // the mask is not lost on the way
}

TEST(Scale, FitsAndCoversByTheAspect)
{
    struct Case {
        IntSize own;
        CGSize target;
        IntSize fitted;
        IntSize covering;
    };
    for (const Case& c :
         {Case{{400, 200}, {100, 100}, {100, 50}, {200, 100}}, Case{{200, 400}, {100, 100}, {50, 100}, {100, 200}},
          Case{{400, 300}, {100, 20}, {26, 20}, {100, 75}}, Case{{300, 400}, {20, 100}, {20, 26}, {75, 100}},
          Case{{100, 100}, {33.7, 50.2}, {33, 33}, {50, 50}}}) {
        const UIImage image = flat(c.own.width, c.own.height, {1, 2, 3, 255});
        SCOPED_TRACE(testing::Message() << c.own.width << " x " << c.own.height);
        EXPECT_EQ(scaleToFitSize(image, c.target).cgImage().size(), c.fitted);
        EXPECT_EQ(scaleToSize(image, c.target, 2).cgImage().size(), c.covering);
    }
}

TEST(Scale, RoundingErrorsCostNoPoint)
{
    // In points of scale 3: 20 · (38/3) / (20/3) is 38, and a hair less in floating point.
    const Bytes color{1, 2, 3, 255};
    const auto ofScale3 = [&](int width, int height) { return UIImage(flat(width, height, color).cgImage(), 3); };
    EXPECT_EQ(scaleToCoverSize(ofScale3(38, 20), {12, 20}).cgImage().size(), (IntSize{114, 60}));
    EXPECT_EQ(scaleToCoverSize(ofScale3(2, 41), {44, 5}).cgImage().size(), (IntSize{132, 2706}));
    for (const int tenths : {1, 2, 3, 4, 5, 6, 7, 8, 9, 11, 13, 14}) // as floats most are a little more or less
        EXPECT_EQ(scaleByFactor(flat(100, 10, color), static_cast<float>(tenths) / 10).cgImage().size(),
                  (IntSize{10 * tenths, tenths}));
}

TEST(Scale, FillsInPixelsOfThePicturesScale)
{
    const UIImage image = places(60, 40, 2, UIImageOrientation::LeftMirrored); // 20 × 30 points as shown
    const UIImage filled = scaleToSize(image, {10.4, 7.3});
    EXPECT_EQ(filled.cgImage().size(), (IntSize{14, 20}));
    EXPECT_EQ(filled.size(), (CGSize{10, 7}));
    EXPECT_EQ(filled.imageOrientation(), UIImageOrientation::LeftMirrored);
    EXPECT_EQ(filled.cgImage().bitmapInfo(), bitmapInfo(CGImageAlphaInfo::NoneSkipFirst));
    EXPECT_EQ(scaleByFactor(image, 0.5F).size(), (CGSize{10, 15}));
    EXPECT_EQ(scaleToSize(image, {10, 10}, 77).size(), (CGSize{10, 10}));
    // Halved, each pixel is the mean of four: rows and columns 2k and 2k + 1 give 2k + 1/2.
    const Bytes mean = bytesAt(scaleByFactor(places(60, 40), 0.5F), 10, 7);
    EXPECT_NEAR(mean[1], 20.5, 0.5);
    EXPECT_NEAR(mean[2], 14.5, 0.5);
}

TEST(Scale, KeepsColoursAtClearEdges)
{
    // Straight white beside clear green: half of each is half-clear white, without a tint of green.
    const UIImage image = picture(2, 1, kStraight, [](int x, int) {
        return x == 0 ? Bytes{255, 255, 255, 255} : Bytes{0, 255, 0, 0};
    });
    const UIImage half = scaleToFillSize(image, {1, 1});
    ASSERT_EQ(half.cgImage().alphaInfo(), CGImageAlphaInfo::PremultipliedFirst);
    const Bytes pixel = bytesAt(half, 0, 0);
    EXPECT_NEAR(pixel[0], 127.5, 0.5);
    EXPECT_EQ(pixel[1], pixel[0]);
    EXPECT_EQ(pixel[2], pixel[0]);
    EXPECT_EQ(pixel[3], pixel[0]);
}

TEST(Scale, RefusesBadSizes)
{
    const UIImage image = flat(4, 3, {9, 9, 9, 255});
    for (const CGSize size : {CGSize{0, 1}, CGSize{5, -1}, CGSize{kNaN, 1}, CGSize{1, kInfinity}, CGSize{0.9, 10},
                              CGSize{1e6, 1e6}, CGSize{1e6, 1}, CGSize{1e300, 1e300}, CGSize{2e5, 2e5}}) {
        SCOPED_TRACE(testing::Message() << size.width << " x " << size.height);
        EXPECT_FALSE(scaleToFillSize(image, size));
        EXPECT_FALSE(scaleToFillSize(UIImage(), size));
    }
    EXPECT_FALSE(scaleToFitSize(image, {kNaN, 10}));
    EXPECT_FALSE(scaleToCoverSize(image, {10, -3}));
    EXPECT_FALSE(scaleToCoverSize(image, {1e6, 1e6}));
    EXPECT_FALSE(scaleByFactor(image, std::numeric_limits<float>::quiet_NaN()));
    EXPECT_FALSE(scaleByFactor(image, -1));
    EXPECT_FALSE(scaleToFitSize(UIImage(), {10, 10}));
}

TEST(Mask, ActsTwice)
{
    const UIImage image = flat(3, 1, {200, 100, 40, 255});
    const UIImage mask = grayPicture(3, 1, [](int x, int) {
        return std::array{0, 128, 255}[static_cast<std::size_t>(x)];
    });
    const UIImage masked = maskWithImage(image, mask);
    EXPECT_EQ(masked.cgImage().alphaInfo(), CGImageAlphaInfo::PremultipliedFirst);
    EXPECT_EQ(bytesAt(masked, 0, 0), (Bytes{0, 0, 0, 0}));
    EXPECT_EQ(bytesAt(masked, 1, 0), (Bytes{64, 50, 25, 10})); // (128 / 255)² = 0.25197
    EXPECT_EQ(bytesAt(masked, 2, 0), (Bytes{255, 200, 100, 40}));

    // The same grey in colour; red is darker than grey, clear is black. 0.2126 · 255 = 54.2; (54 / 255)² = 0.04484
    const UIImage colored = picture(3, 1, kStraight, [](int x, int) {
        return std::array{Bytes{128, 128, 128, 255}, Bytes{255, 0, 0, 255},
                          Bytes{255, 255, 255, 0}}[static_cast<std::size_t>(x)];
    });
    const UIImage byColour = maskWithImage(image, colored);
    EXPECT_EQ(bytesAt(byColour, 0, 0), bytesAt(masked, 1, 0));
    EXPECT_EQ(bytesAt(byColour, 1, 0), (Bytes{11, 9, 4, 2}));
    EXPECT_EQ(bytesAt(byColour, 2, 0), (Bytes{0, 0, 0, 0}));
}

TEST(Mask, TakesNoOtherSize)
{
    const UIImage image = flat(3, 2, {1, 2, 3, 255});
    EXPECT_FALSE(maskWithImage(image, flat(2, 3, {255, 255, 255, 255})));
    EXPECT_FALSE(maskWithImage(image, UIImage()));
    EXPECT_FALSE(maskWithImage(UIImage(), image));
}

TEST(Reflection, MirrorsTheBottomAndFades)
{
    const UIScreen before = UIScreen::main();
    UIScreen::setMain({before.bounds, 1});
    const UIImage image = picture(3, 10, kOpaque, [](int, int y) {
        return Bytes{static_cast<std::uint8_t>(20 * y), 255, 0, 255};
    });
    const UIImage strip = reflectedImageWithHeight(image, 4, 0.8F, 0.2F);
    UIScreen::setMain(before);
    ASSERT_EQ(strip.cgImage().size(), (IntSize{3, 4}));
    EXPECT_EQ(strip.imageOrientation(), UIImageOrientation::Up);
    for (int y = 0; y < 4; ++y) {
        const double alpha = 0.8 - 0.6 * (y + 0.5) / 4;
        const Bytes pixel = bytesAt(strip, 1, y);
        EXPECT_NEAR(pixel[3], 255 * alpha, 1) << y;
        EXPECT_NEAR(pixel[0], 20 * (9 - y) * alpha, 1) << y;
        EXPECT_NEAR(pixel[1], 255 * alpha, 1) << y;
    }
}

TEST(Reflection, HasTheScreensScaleAndEndsWithThePicture)
{
    const UIScreen screen = UIScreen::main();
    const UIImage strip = reflectedImageWithHeight(flat(5, 2, {255, 255, 255, 255}), 4, 1, 1);
    EXPECT_EQ(strip.scale(), screen.scale);
    EXPECT_EQ(strip.size(), (CGSize{5, 4}));
    EXPECT_EQ(bytesAt(strip, 1, 1), (Bytes{255, 255, 255, 255}));
    EXPECT_EQ(bytesAt(strip, 1, strip.cgImage().height() - 1), (Bytes{0, 0, 0, 0}));
    const UIImage image = flat(5, 2, {255, 255, 255, 255});
    EXPECT_FALSE(reflectedImageWithHeight(image, 0, 1, 0));
    EXPECT_FALSE(reflectedImageWithHeight(image, 4'000'000'000U, 1, 0));
    EXPECT_FALSE(reflectedImageWithHeight(image, 2, static_cast<float>(kNaN), 0));
    EXPECT_FALSE(reflectedImageWithHeight(UIImage(), 2, 1, 0));
    EXPECT_EQ(bytesAt(reflectedImageWithHeight(image, 2, 7, 1), 0, 0)[3], 255); // cut to [0, 1]
}

TEST(WorkingSurface, IsOfTruncatedPointsAndPremultiplied)
{
    const UIImage image = picture(
        7, 4, kStraight,
        [](int, int) {
            return Bytes{200, 100, 0, 128};
        },
        2, UIImageOrientation::Right);
    std::optional<DrawingSurface> surface = workingSurface(image);
    ASSERT_TRUE(surface);
    EXPECT_EQ(surface->size(), (IntSize{2, 3})); // 4 × 7 pixels as shown, at 2 a point
    EXPECT_TRUE(surface->hasAlpha());
    const UIImage drawn = std::move(*surface).makePicture();
    for (const Bytes& pixel : allBytes(drawn)) { // 200 · 128 / 255 = 100.4
        EXPECT_EQ(pixel[0], 128);
        EXPECT_NEAR(pixel[1], 100.4, 1);
        EXPECT_NEAR(pixel[2], 50.2, 1);
        EXPECT_EQ(pixel[3], 0);
    }
    const UIImage little =
        flat(3, 3, {30, 20, 10, 77}, bitmapInfo(CGImageAlphaInfo::NoneSkipFirst, kCGBitmapByteOrder32Little));
    std::optional<DrawingSurface> opaque = workingSurface(little);
    ASSERT_TRUE(opaque);
    EXPECT_FALSE(opaque->hasAlpha());
    EXPECT_EQ(bytesAt(std::move(*opaque).makePicture(), 2, 2), (Bytes{255, 10, 20, 30}));
    EXPECT_FALSE(workingSurface(UIImage()));
    EXPECT_FALSE(workingSurface(UIImage(flat(2, 2, {}).cgImage(), 4))); // half a point
}

} // namespace
} // namespace lamina::test
