#include "imageops/ImageGeometry.h"

#include "TestPictures.h"
#include "platform/base/UIScreen.h"

#include <cmath>
#include <cstddef>
#include <limits>
#include <numbers>
#include <utility>

namespace lamina::test {
namespace {

using Alpha = CGImageAlphaInfo;

constexpr CGBitmapInfo kSurface = bitmapInfo(Alpha::PremultipliedFirst);
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

std::uint8_t byte(int value)
{
    return static_cast<std::uint8_t>(value);
}

/// Every pixel tells its place in its first two colours.
UIImage numbered(int width, int height, CGBitmapInfo info = bitmapInfo(Alpha::NoneSkipLast), double scale = 1,
                 UIImageOrientation orientation = UIImageOrientation::Up)
{
    const auto places = componentPlaces(info);
    const CGImage pixels = makePicture(paddedLayout(width, height, info), [&](int x, int y) {
        Rgba pixel{};
        pixel[places[0]] = byte(x);
        pixel[places[1]] = byte(y);
        pixel[places[3]] = 255;
        return pixel;
    });
    return UIImage(pixels, scale, orientation);
}

/// Where a pixel of a numbered picture came from.
std::pair<int, int> cameFrom(const UIImage& image, int x, int y)
{
    const Rgba pixel = pixelAt(image.cgImage(), x, y);
    const auto places = componentPlaces(image.cgImage().bitmapInfo());
    EXPECT_EQ(pixel[places[3]], 255);
    return {pixel[places[0]], pixel[places[1]]};
}

IntSize sizeOf(const UIImage& image)
{
    return image.cgImage().size();
}

TEST(QuarterTurns, MoveEveryPixelToItsPlace)
{
    struct Case {
        std::function<UIImage(const UIImage&)> turn;
        UIImageOrientation same; ///< the tag that shows a picture in the same way
    };
    const Case cases[] = {
        {[](const UIImage& image) { return rotateInDegrees(image, 90); }, UIImageOrientation::Left},
        {[](const UIImage& image) { return rotateInDegrees(image, -3690); }, UIImageOrientation::Right},
        {[](const UIImage& image) { return rotateInDegrees(image, 180); }, UIImageOrientation::Down},
        {[](const UIImage& image) { return rotateInRadians(image, static_cast<float>(M_PI_2), true, false); },
         UIImageOrientation::LeftMirrored},
        {horizontalFlip, UIImageOrientation::UpMirrored},
        {verticalFlip, UIImageOrientation::DownMirrored},
    };
    for (const Case& c : cases) {
        // Sizes on both sides of the blocks that pixels are moved by.
        for (const IntSize size : {IntSize{1, 1}, {5, 3}, {37, 66}, {130, 141}}) {
            for (const CGBitmapInfo info : {bitmapInfo(Alpha::Last), bitmapInfo(Alpha::NoneSkipLast), kSurface,
                                            bitmapInfo(Alpha::NoneSkipFirst, kCGBitmapByteOrder32Little)}) {
                const UIImage image = numbered(size.width, size.height, info);
                const UIImage shown = UIImage(image.cgImage(), 1, c.same).upright();
                EXPECT_EQ(bytesOf(c.turn(image).cgImage()), bytesOf(shown.cgImage()))
                    << size.width << " x " << size.height << ", layout " << info << ", turn " << &c - cases;
            }
        }
    }
}

TEST(QuarterTurns, AlwaysHaveAlphaAndKeepScaleAndTag)
{
    // A skipped byte that holds anything counts as opaque afterwards.
    const UIImage image(solidPicture(2, 1, {10, 20, 30, 3}, Alpha::NoneSkipLast), 2, UIImageOrientation::Right);
    for (const UIImage& turned : {rotateInDegrees(image, 90), verticalFlip(image), rotateInDegrees(image, 1)}) {
        EXPECT_TRUE(turned.cgImage().hasAlpha());
        EXPECT_EQ(turned.scale(), 2);
        EXPECT_EQ(turned.imageOrientation(), UIImageOrientation::Right);
    }
    EXPECT_EQ(pixelAt(rotateInDegrees(image, 90).cgImage(), 0, 0), (Rgba{10, 20, 30, 255}));
}

TEST(QuarterTurns, OtherFormsAreDrawnFirst)
{
    const UIImage left = rotateInDegrees(UIImage(bytePicture(3, 2, [](int x, int y) { return 10 * x + 100 * y; })), 90);
    EXPECT_EQ(left.cgImage().bitmapInfo(), kSurface);
    EXPECT_EQ(componentGrid(left.cgImage(), 2), (std::vector<std::vector<int>>{{20, 120}, {10, 110}, {0, 100}}));
    const CGImage white = solidPicture(2, 1, {255, 255, 255, 255}, Alpha::NoneSkipLast);
    const UIImage masked(white.withMask(bytePicture(2, 1, [](int x, int) { return 255 * x; }))); // black shows
    EXPECT_EQ(componentGrid(horizontalFlip(masked).cgImage()), (std::vector<std::vector<int>>{{0, 255}}));
}

TEST(ObliqueTurns, GoCounterClockwiseAfterTheFlipsInTheirBoundingBox)
{
    // Red on the left half, green on the right; at 30 degrees the right-hand half rises.
    const UIImage halves(makePicture(80, 60, [](int x, int) {
        return x < 40 ? Rgba{255, 0, 0, 255} : Rgba{0, 255, 0, 255};
    }));
    const float angle = 30 * 0.017453293F;
    const struct {
        UIImage turned;
        bool redIsLeft;
    } cases[] = {{rotateInRadians(halves, angle), true},
                 {rotateInRadians(halves, angle, true, false), false},
                 {rotateInRadians(halves, angle, false, true), true}};
    for (const auto& c : cases) {
        ASSERT_EQ(sizeOf(c.turned), (IntSize{99, 91})); // 80 cos + 60 sin = 99.3, 80 sin + 60 cos = 92.0 less a hair
        EXPECT_EQ(c.turned.cgImage().bitmapInfo(), kSurface);
        const auto at = [&](double degrees) {
            const double radians = degrees * std::numbers::pi / 180;
            return pixelAt(c.turned.cgImage(), static_cast<int>(49.5 + 25 * std::cos(radians)),
                           static_cast<int>(45.5 - 25 * std::sin(radians)));
        };
        const Rgba red{255, 255, 0, 0};
        const Rgba green{255, 0, 255, 0};
        for (const double right : {30 + 80, 30 - 80})
            EXPECT_EQ(at(right), c.redIsLeft ? green : red);
        for (const double left : {30 + 100, 30 - 100})
            EXPECT_EQ(at(left), c.redIsLeft ? red : green);
        double area = 0;
        for (const Rgba& pixel : pixelsOf(c.turned.cgImage())) {
            EXPECT_NEAR(pixel[0], pixel[1] + pixel[2], 1); // premultiplied
            area += pixel[0] / 255.0;
        }
        EXPECT_NEAR(area, 80 * 60, 15);
        for (const auto& [x, y] : {std::pair(0, 0), std::pair(98, 0), std::pair(0, 90), std::pair(98, 90)})
            EXPECT_EQ(pixelAt(c.turned.cgImage(), x, y), Rgba{});
    }
}

TEST(TurnsInPlace, KeepTheSizeAndLoseWhatReachesBeyondIt)
{
    const UIImage red(solidPicture(40, 40, {255, 0, 0, 255}), 2, UIImageOrientation::Left);
    const UIImage turned = rotateImagePixelsInDegrees(red, 45);
    EXPECT_EQ(turned.size(), red.size());
    EXPECT_EQ(turned.imageOrientation(), UIImageOrientation::Left);
    EXPECT_EQ(pixelAt(turned.cgImage(), 0, 0), Rgba{});
    EXPECT_EQ(pixelAt(turned.cgImage(), 20, 20), (Rgba{255, 255, 0, 0}));
    // A quarter of a picture that is not square: the ends become clear.
    const UIImage quarter = rotateImagePixelsInDegrees(numbered(8, 4), 90);
    ASSERT_EQ(sizeOf(quarter), (IntSize{8, 4}));
    EXPECT_EQ(pixelAt(quarter.cgImage(), 1, 2), Rgba{});
    EXPECT_EQ(cameFrom(quarter, 2, 0), std::pair(5, 0));
    EXPECT_EQ(cameFrom(quarter, 5, 3), std::pair(2, 3));
}

TEST(Crop, AnchorsByModeAndTakesPixelsWhole)
{
    const UIImage image = numbered(100, 60);
    // 20 × 10 of 100 × 60: what remains is 80 × 50.
    const std::pair<int, int> corners[] = {{0, 0},   {40, 0}, {80, 0},  {0, 50}, {40, 50},
                                           {80, 50}, {0, 25}, {80, 25}, {40, 25}};
    for (int mode = 0; mode < 9; ++mode) {
        const UIImage part = cropToSize(image, {20, 10}, mode);
        ASSERT_EQ(sizeOf(part), (IntSize{20, 10})) << mode;
        EXPECT_EQ(cameFrom(part, 0, 0), corners[mode]) << mode;
    }
    for (const int mode : {-1, 9, 1000})
        EXPECT_EQ(cameFrom(cropToSize(image, {20, 10}, mode), 0, 0), std::pair(0, 0));
    EXPECT_EQ(cropToSize(image, {20, 10}).cgImage().bytes().data(), image.cgImage().bytes().data());
    EXPECT_EQ(sizeOf(cropToSize(image, {3.5, 1}, CropModeTopRight)), (IntSize{4, 1})); // from 96.5
    EXPECT_EQ(sizeOf(cropToSize(UIImage(image.cgImage(), 3), {100.0 / 3, 20})), (IntSize{100, 60}));
    // Sides of the stored picture are swapped: 30 × 50 points as shown.
    const UIImage turned(image.cgImage(), 2, UIImageOrientation::Right);
    const UIImage part = cropToSize(turned, {10, 20}, CropModeBottomRight); // at (20, 30) points
    ASSERT_EQ(sizeOf(part), (IntSize{40, 20}));
    EXPECT_EQ(cameFrom(part, 0, 0), std::pair(60, 40));
    EXPECT_EQ(part.size(), (CGSize{10, 20}));
    EXPECT_EQ(part.imageOrientation(), UIImageOrientation::Right);
    // The mask is not lost on the way.
    const UIImage masked(image.cgImage().withMask(bytePicture(10, 6, [](int x, int) { return x < 5 ? 255 : 0; })));
    EXPECT_EQ(pixelAt(cropToSize(masked, {30, 60}).cgImage(), 0, 0)[3], 0);
}

TEST(Scale, FitsAndCoversByTheAspect)
{
    const struct {
        IntSize own;
        CGSize target;
        IntSize fitted;
        IntSize covering;
    } cases[] = {{{400, 200}, {100, 100}, {100, 50}, {200, 100}},
                 {{400, 300}, {100, 20}, {26, 20}, {100, 75}},
                 {{300, 400}, {20, 100}, {20, 26}, {75, 100}},
                 {{100, 100}, {33.7, 50.2}, {33, 33}, {50, 50}}};
    for (const auto& c : cases) {
        const UIImage image(solidPicture(c.own.width, c.own.height, {1, 2, 3, 255}));
        EXPECT_EQ(sizeOf(scaleToFitSize(image, c.target)), c.fitted) << c.own.width;
        EXPECT_EQ(sizeOf(scaleToSize(image, c.target, 2)), c.covering) << c.own.width;
    }
    // Rounding errors cost no point: at scale 3, 20 · (38/3) / (20/3) is 38, and a hair less in floating point.
    const auto ofScale3 = [](int width, int height) { return UIImage(solidPicture(width, height, {1, 2, 3, 255}), 3); };
    EXPECT_EQ(sizeOf(scaleToCoverSize(ofScale3(38, 20), {12, 20})), (IntSize{114, 60}));
    EXPECT_EQ(sizeOf(scaleToCoverSize(ofScale3(2, 41), {44, 5})), (IntSize{132, 2706}));
    for (const int tenths : {1, 3, 7, 9, 11, 14}) // as floats most are a little more or less
        EXPECT_EQ(sizeOf(scaleByFactor(numbered(100, 10), static_cast<float>(tenths) / 10)),
                  (IntSize{10 * tenths, tenths}));
}

TEST(Scale, FillsInPixelsOfThePicturesScaleWithMeans)
{
    // 20 × 30 points as shown.
    const UIImage image = numbered(60, 40, bitmapInfo(Alpha::NoneSkipLast), 2, UIImageOrientation::LeftMirrored);
    const UIImage filled = scaleToSize(image, {10.4, 7.3});
    EXPECT_EQ(sizeOf(filled), (IntSize{14, 20}));
    EXPECT_EQ(filled.size(), (CGSize{10, 7}));
    EXPECT_EQ(filled.imageOrientation(), UIImageOrientation::LeftMirrored);
    EXPECT_EQ(filled.cgImage().bitmapInfo(), bitmapInfo(Alpha::NoneSkipFirst));
    EXPECT_EQ(scaleToSize(image, {10, 10}, 77).size(), (CGSize{10, 10}));
    // Halved, each pixel is the mean of four: rows and columns 2k and 2k + 1 give 2k + 1/2.
    const Rgba mean = pixelAt(scaleByFactor(image, 0.5F).cgImage(), 10, 7);
    EXPECT_NEAR(mean[1], 20.5, 0.5);
    EXPECT_NEAR(mean[2], 14.5, 0.5);
    // Straight white beside clear green: half of each is half-clear white, without a tint of green.
    const UIImage edge(makePicture(
        2, 1,
        [](int x, int) {
            return x == 0 ? Rgba{255, 255, 255, 255} : Rgba{0, 255, 0, 0};
        },
        true));
    EXPECT_EQ(pixelAt(scaleToFillSize(edge, {1, 1}).cgImage(), 0, 0), (Rgba{128, 128, 128, 128}));
}

TEST(Mask, OfCoverageAloneActsTwiceByIt)
{
    const UIImage mask(bytePicture(
        3, 1,
        [](int x, int) {
            return std::array{0, 128, 255}[static_cast<std::size_t>(x)];
        },
        CGColorSpace::alphaOnly()));
    const UIImage masked = maskWithImage(UIImage(solidPicture(3, 1, {200, 100, 40, 255})), mask);
    EXPECT_EQ(masked.cgImage().bitmapInfo(), kSurface);
    // (128 / 255)² = 0.25197
    EXPECT_EQ(pixelsOf(masked.cgImage()), (std::vector<Rgba>{{}, {64, 50, 25, 10}, {255, 200, 100, 40}}));
}

TEST(Reflection, MirrorsTheBottomFadesAndEndsWithThePicture)
{
    const UIScreen before = UIScreen::main();
    UIScreen::setMain({before.bounds, 1});
    const UIImage image(makePicture(3, 10, [](int, int y) { return Rgba{byte(20 * y), 255, 0, 255}; }));
    const UIImage strip = reflectedImageWithHeight(image, 4, 0.8F, 0.2F);
    UIScreen::setMain({before.bounds, 2});
    const UIImage beyond = reflectedImageWithHeight(image, 11, 7, 1); // cut to [0, 1]
    UIScreen::setMain(before);
    ASSERT_EQ(sizeOf(strip), (IntSize{3, 4}));
    for (int y = 0; y < 4; ++y) {
        const double alpha = 0.8 - 0.6 * (y + 0.5) / 4;
        const Rgba pixel = pixelAt(strip.cgImage(), 1, y);
        EXPECT_NEAR(pixel[3], 255 * alpha, 1) << y;
        EXPECT_NEAR(pixel[0], 20 * (9 - y) * alpha, 1) << y;
        EXPECT_NEAR(pixel[1], 255 * alpha, 1) << y;
    }
    EXPECT_EQ(beyond.scale(), 2);
    EXPECT_EQ(beyond.size(), (CGSize{3, 11}));
    EXPECT_EQ(pixelAt(beyond.cgImage(), 2, 19)[3], 255);
    EXPECT_EQ(pixelAt(beyond.cgImage(), 2, 21), Rgba{});
}

TEST(Geometry, GivesNoPictureForWhatCannotBe)
{
    const UIImage none;
    const UIImage image = numbered(10, 6);
    constexpr float kNoNumber = std::numeric_limits<float>::quiet_NaN();
    const UIImage refused[] = {
        rotateInDegrees(none, 90),
        rotateInDegrees(image, kNoNumber),
        rotateInDegrees(image, std::numeric_limits<float>::infinity()),
        rotateInDegrees(numbered(300'000, 1), 90), // too long a side
        rotateInDegrees(numbered(40'000, 1), 45),  // the box would take gigabytes
        rotateImagePixelsInRadians(image, kNoNumber),
        rotateImagePixelsInDegrees(none, 3),
        horizontalFlip(none),
        cropToSize(none, {1, 1}, 8),
        cropToSize(image, {10, 6.1}),
        cropToSize(image, {1e-9, 1}),
        cropToSize(image, {5, kInfinity}),
        scaleToFillSize(none, {1, 1}),
        scaleToFillSize(image, {0.5, 10}),
        scaleToFillSize(image, {1e6, 1e6}),
        scaleToFitSize(image, {kNaN, 10}),
        scaleToCoverSize(image, {10, -3}),
        scaleByFactor(image, -1),
        scaleByFactor(image, kNoNumber),
        maskWithImage(image, none),
        maskWithImage(none, image),
        maskWithImage(image, numbered(6, 10)),
        reflectedImageWithHeight(none, 2, 1, 0),
        reflectedImageWithHeight(image, 0, 1, 0),
        reflectedImageWithHeight(image, 4'000'000'000U, 1, 0),
        reflectedImageWithHeight(image, 2, kNoNumber, 0),
    };
    for (const UIImage& result : refused)
        EXPECT_FALSE(result) << "number " << &result - refused;
    EXPECT_TRUE(rotateInRadians(image, std::numeric_limits<float>::max()));
}

} // namespace
} // namespace lamina::test
