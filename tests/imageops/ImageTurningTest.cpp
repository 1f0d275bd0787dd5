#include "imageops/ImageGeometry.h"

#include "EveryProcessor.h"
#include "GeometrySupport.h"
#include "imageops/DrawingSurface.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace lamina::test {
namespace {

constexpr CGBitmapInfo kStraight = bitmapInfo(CGImageAlphaInfo::Last);
constexpr CGBitmapInfo kOpaque = bitmapInfo(CGImageAlphaInfo::NoneSkipLast);
constexpr CGBitmapInfo kSurface = bitmapInfo(CGImageAlphaInfo::PremultipliedFirst);

/// Every pixel tells its place.
UIImage numbered(int width, int height, CGBitmapInfo info = kStraight)
{
    return picture(width, height, info, [](int x, int y) {
        return Bytes{static_cast<std::uint8_t>(x), static_cast<std::uint8_t>(y), static_cast<std::uint8_t>(x >> 8), 9};
    });
}

/// The first two bytes of a numbered picture's pixel: where it came from.
std::pair<int, int> cameFrom(const UIImage& image, int x, int y)
{
    const Bytes bytes = bytesAt(image, x, y);
    return {bytes[0] + 256 * bytes[2], bytes[1]};
}

TEST(QuarterTurns, MoveEveryPixelToItsPlace)
{
    // Sizes on both sides of the blocks that pixels are moved by.
    for (const IntSize size : {IntSize{1, 1}, IntSize{1, 7}, IntSize{5, 3}, IntSize{37, 66}, IntSize{130, 141}}) {
        SCOPED_TRACE(testing::Message() << size.width << " x " << size.height);
        const int w = size.width;
        const int h = size.height;
        const UIImage image = numbered(w, h);
        const UIImage left = rotateInDegrees(image, 90);
        const UIImage right = rotateInDegrees(image, -90);
        const UIImage half = rotateInDegrees(image, 180);
        const UIImage flippedX = horizontalFlip(image);
        const UIImage flippedY = verticalFlip(image);
        const UIImage mirroredLeft = rotateInRadians(image, static_cast<float>(M_PI_2), true, false);
        ASSERT_EQ(left.cgImage().size(), (IntSize{h, w}));
        ASSERT_EQ(right.cgImage().size(), (IntSize{h, w}));
        ASSERT_EQ(half.cgImage().size(), size);
        for (int y = 0; y < h; ++y) {
            for (int x = 0; x < w; ++x) {
                const std::pair from(x, y);
                // Counter-clockwise: the right-hand column becomes the top row.
                ASSERT_EQ(cameFrom(left, y, w - 1 - x), from);
                ASSERT_EQ(cameFrom(right, h - 1 - y, x), from);
                ASSERT_EQ(cameFrom(half, w - 1 - x, h - 1 - y), from);
                ASSERT_EQ(cameFrom(mirroredLeft, y, x), from); // mirrored first
                ASSERT_EQ(cameFrom(flippedX, w - 1 - x, y), from);
                ASSERT_EQ(cameFrom(flippedY, x, h - 1 - y), from);
            }
        }
    }
}

TEST(QuarterTurns, AreTheSameOnEveryProcessor)
{
    const int w = 203;
    const int h = 141;
    const UIImage image = noise(w, h, kOpaque);
    onEveryProcessor([&](const std::string& processor) {
        const UIImage left = rotateInDegrees(image, 90);
        const UIImage flipped = horizontalFlip(image);
        const UIImage upright = UIImage(image.cgImage(), 1, UIImageOrientation::RightMirrored).upright();
        int wrong = 0;
        for (int y = 0; y < h; ++y) {
            for (int x = 0; x < w; ++x) {
                const Bytes from = bytesAt(image, x, y);
                wrong += bytesAt(left, y, w - 1 - x) != from ? 1 : 0;
                wrong += bytesAt(flipped, w - 1 - x, y) != from ? 1 : 0;
                wrong += bytesAt(upright, h - 1 - y, w - 1 - x) != from ? 1 : 0; // mirrored, then turned to the right
            }
        }
        EXPECT_EQ(wrong, 0) << processor;
    });
}

TEST(QuarterTurns, FourOfThemAndTwoFlipsGiveBackTheBytes)
{
    const CGBitmapInfo littleFirst = bitmapInfo(CGImageAlphaInfo::PremultipliedFirst, kCGBitmapByteOrder32Little);
    for (const CGBitmapInfo info :
         {kStraight, kOpaque, kSurface, littleFirst, bitmapInfo(CGImageAlphaInfo::NoneSkipFirst)}) {
        SCOPED_TRACE(info);
        const UIImage image = noise(67, 35, info);
        for (const float degrees : {90.0F, -90.0F, 270.0F, 450.0F, -3690.0F}) {
            UIImage turned = image;
            for (int i = 0; i < 4; ++i)
                turned = rotateInDegrees(turned, degrees);
            EXPECT_EQ(allBytes(turned), allBytes(image)) << degrees;
        }
        EXPECT_EQ(allBytes(horizontalFlip(horizontalFlip(image))), allBytes(image));
        EXPECT_EQ(allBytes(verticalFlip(verticalFlip(image))), allBytes(image));
    }
}

TEST(QuarterTurns, AlwaysHaveAlphaAndKeepScaleAndTag)
{
    // A skipped byte that holds anything counts as opaque afterwards.
    const UIImage image = picture(
        2, 1, kOpaque,
        [](int x, int) {
            return Bytes{10, 20, static_cast<std::uint8_t>(x), 3};
        },
        2, UIImageOrientation::Right);
    for (const UIImage& turned : {rotateInDegrees(image, 90), verticalFlip(image), rotateInDegrees(image, 1)}) {
        EXPECT_TRUE(sourceHasAlpha(turned.cgImage()));
        EXPECT_EQ(turned.scale(), 2);
        EXPECT_EQ(turned.imageOrientation(), UIImageOrientation::Right);
    }
    EXPECT_EQ(bytesAt(rotateInDegrees(image, 90), 0, 0), (Bytes{10, 20, 1, 255}));
    EXPECT_EQ(bytesAt(horizontalFlip(image), 0, 0), (Bytes{10, 20, 1, 255}));
    EXPECT_EQ(bytesAt(verticalFlip(image), 0, 0), (Bytes{10, 20, 0, 255}));
}

TEST(QuarterTurns, OtherFormsAreDrawnFirst)
{
    const UIImage gray = grayPicture(3, 2, [](int x, int y) { return 10 * x + 100 * y; });
    const UIImage left = rotateInDegrees(gray, 90);
    EXPECT_EQ(left.cgImage().size(), (IntSize{2, 3}));
    EXPECT_EQ(left.cgImage().bitmapInfo(), kSurface);
    EXPECT_EQ(bytesAt(left, 1, 0), (Bytes{255, 120, 120, 120}));

    const UIImage white = picture(2, 1, kOpaque, [](int, int) { return Bytes{255, 255, 255, 255}; });
    const UIImage ramp = grayPicture(2, 1, [](int x, int) { return 255 * x; });
    const UIImage masked(white.cgImage().withMask(ramp.cgImage()));
    EXPECT_EQ(bytesAt(horizontalFlip(masked), 1, 0), (Bytes{255, 255, 255, 255})); // black shows in a mask of this kind
    EXPECT_EQ(bytesAt(horizontalFlip(masked), 0, 0)[0], 0);
}

TEST(ObliqueTurns, TakeTheBoundingBoxWithClearCorners)
{
    const UIImage red = picture(100, 60, kOpaque, [](int, int) { return Bytes{255, 0, 0, 255}; });
    const UIImage turned = rotateInDegrees(red, 45);
    ASSERT_EQ(turned.cgImage().size(), (IntSize{113, 113})); // 160 / sqrt 2 = 113.14
    EXPECT_EQ(turned.cgImage().bitmapInfo(), kSurface);
    EXPECT_EQ(bytesAt(turned, 56, 56), (Bytes{255, 255, 0, 0}));
    for (const auto& [x, y] : {std::pair(0, 0), std::pair(112, 0), std::pair(0, 112), std::pair(112, 112)})
        EXPECT_EQ(bytesAt(turned, x, y), (Bytes{0, 0, 0, 0}));
    double area = 0;
    for (const Bytes& pixel : allBytes(turned)) {
        EXPECT_EQ(pixel[1], pixel[0]); // premultiplied red
        area += pixel[0] / 255.0;
    }
    EXPECT_NEAR(area, 6000, 15);
}

TEST(ObliqueTurns, GoCounterClockwiseAfterTheFlips)
{
    // Red on the left half, green on the right; at 30 degrees the right-hand half rises.
    const UIImage halves = picture(80, 80, kOpaque, [](int x, int) {
        return x < 40 ? Bytes{255, 0, 0, 255} : Bytes{0, 255, 0, 255};
    });
    const auto colorAt = [](const UIImage& image, double radius, double degrees) {
        const double angle = degrees * M_PI / 180;
        const double middle = image.cgImage().width() / 2.0;
        return bytesAt(image, static_cast<int>(middle + radius * std::cos(angle)),
                       static_cast<int>(middle - radius * std::sin(angle)));
    };
    const Bytes red{255, 255, 0, 0};
    const Bytes green{255, 0, 255, 0};
    const float angle = 30 * 0.017453293F;
    const UIImage turned = rotateInRadians(halves, angle);
    EXPECT_EQ(colorAt(turned, 25, 30 + 80), green);
    EXPECT_EQ(colorAt(turned, 25, 30 + 100), red);
    EXPECT_EQ(colorAt(turned, 25, 30 - 80), green);
    EXPECT_EQ(colorAt(turned, 25, 30 - 100), red);
    EXPECT_EQ(colorAt(rotateInRadians(halves, angle, true, false), 25, 30 + 80), red);
    EXPECT_EQ(colorAt(rotateInRadians(halves, angle, false, true), 25, 30 + 80), green);
    const UIImage inPlace = rotateImagePixelsInDegrees(halves, 30);
    EXPECT_EQ(colorAt(inPlace, 25, 30 + 80), green);
    EXPECT_EQ(colorAt(inPlace, 25, 30 + 100), red);
}

TEST(TurnsInPlace, KeepTheSizeAndLoseTheCorners)
{
    const UIImage red = picture(
        40, 40, kOpaque,
        [](int, int) {
            return Bytes{255, 0, 0, 255};
        },
        2, UIImageOrientation::Left);
    const UIImage turned = rotateImagePixelsInDegrees(red, 45);
    EXPECT_EQ(turned.size(), red.size());
    EXPECT_EQ(turned.imageOrientation(), UIImageOrientation::Left);
    EXPECT_EQ(bytesAt(turned, 0, 0), (Bytes{0, 0, 0, 0}));
    EXPECT_EQ(bytesAt(turned, 20, 20), (Bytes{255, 255, 0, 0}));

    // A quarter of a picture that is not square: what reaches beyond the frame is lost, the ends become clear.
    const UIImage quarter = rotateImagePixelsInDegrees(
        picture(8, 4, kOpaque,
                [](int x, int y) {
                    return Bytes{static_cast<std::uint8_t>(10 * x), static_cast<std::uint8_t>(10 * y), 0, 255};
                }),
        90);
    ASSERT_EQ(quarter.cgImage().size(), (IntSize{8, 4}));
    EXPECT_EQ(bytesAt(quarter, 1, 2), (Bytes{0, 0, 0, 0}));
    EXPECT_EQ(bytesAt(quarter, 2, 0), (Bytes{255, 50, 0, 0})); // from column 5 of the top row
    EXPECT_EQ(bytesAt(quarter, 5, 3), (Bytes{255, 20, 30, 0}));
    EXPECT_EQ(cameFrom(rotateImagePixelsInDegrees(numbered(9, 9), 90), 0, 0), std::pair(8, 0));
}

TEST(Turns, RefuseWhatCannotBeTurned)
{
    const UIImage image = numbered(4, 4);
    for (const float bad : {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()}) {
        EXPECT_FALSE(rotateInDegrees(image, bad));
        EXPECT_FALSE(rotateImagePixelsInRadians(image, bad));
    }
    EXPECT_FALSE(rotateInDegrees(UIImage(), 90));
    EXPECT_FALSE(horizontalFlip(UIImage()));
    EXPECT_FALSE(rotateImagePixelsInDegrees(UIImage(), 3));
    EXPECT_TRUE(rotateInRadians(image, std::numeric_limits<float>::max()));
    EXPECT_FALSE(rotateInDegrees(numbered(300'000, 1), 90)); // too long a side
    // A long sliver's bounding box would take gigabytes.
    EXPECT_FALSE(rotateInDegrees(numbered(40'000, 1), 45));
}

} // namespace
} // namespace lamina::test
