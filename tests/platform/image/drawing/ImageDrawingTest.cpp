#include "DrawingSupport.h"
#include "platform/image/drawing/Resampling.h"
#include "platform/image/drawing/UIImageDrawing.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>

namespace lamina {
namespace {

using test::bytesOf;
using test::canvas;
using test::fourBytePicture;
using test::noisePicture;
using test::Pixel;
using test::pixelOf;

CGImage flat(int width, int height, Pixel colour, CGImageAlphaInfo alpha = CGImageAlphaInfo::Last)
{
    return fourBytePicture(width, height, alpha, [&](int, int) { return colour; });
}

TEST(ImageDrawing, WholePlacesMovePixelsUntouched)
{
    const CGImage source = noisePicture(9, 5, CGImageAlphaInfo::PremultipliedLast);
    CGContext context = canvas(20, 20);
    context.drawImage(source, CGAffineTransform::translation(4, 7));
    const CGImage result = context.makeImage();
    for (int y = 0; y < 20; ++y) {
        for (int x = 0; x < 20; ++x) {
            const bool inside = x >= 4 && x < 13 && y >= 7 && y < 12;
            ASSERT_EQ(pixelOf(result, x, y), inside ? pixelOf(source, x - 4, y - 7) : Pixel{}) << x << ", " << y;
        }
    }
}

TEST(ImageDrawing, MirrorsAndQuarterTurnsAreExact)
{
    const CGImage source = noisePicture(11, 6, CGImageAlphaInfo::NoneSkipLast);
    const auto turned = [&](double degrees) { return CGAffineTransform::rotation(degrees * std::numbers::pi / 180); };
    // Each takes the source's pixel (x, y) to the place given beside it; an oblique detour and back costs nothing
    // either.
    const std::vector<std::pair<CGAffineTransform, std::function<IntSize(int, int)>>> cases{
        {{-1, 0, 0, 1, 11, 0},
         [](int x, int y) {
             return IntSize{10 - x, y};
         }},
        {{1, 0, 0, -1, 0, 6},
         [](int x, int y) {
             return IntSize{x, 5 - y};
         }},
        {turned(90).concatenating(CGAffineTransform::translation(6, 0)),
         [](int x, int y) {
             return IntSize{5 - y, x};
         }},
        {turned(180).concatenating(CGAffineTransform::translation(11, 6)),
         [](int x, int y) {
             return IntSize{10 - x, 5 - y};
         }},
        {turned(-90).concatenating(CGAffineTransform::translation(0, 11)),
         [](int x, int y) {
             return IntSize{y, 10 - x};
         }},
        {turned(37).concatenating(turned(-37)),
         [](int x, int y) {
             return IntSize{x, y};
         }},
        {{0, 1, 1, 0, 0, 0},
         [](int x, int y) {
             return IntSize{y, x};
         }},
    };
    for (std::size_t i = 0; i < cases.size(); ++i) {
        CGContext context = canvas(11, 11);
        context.drawImage(source, cases[i].first);
        const CGImage result = context.makeImage();
        for (int y = 0; y < 6; ++y) {
            for (int x = 0; x < 11; ++x) {
                Pixel wanted = pixelOf(source, x, y);
                wanted[3] = 255;
                const IntSize place = cases[i].second(x, y);
                ASSERT_EQ(pixelOf(result, place.width, place.height), wanted) << "case " << i << ": " << x << ", " << y;
            }
        }
    }
}

TEST(ImageDrawing, TheTopEdgeLiesAtTheLargestYInBothKindsOfContext)
{
    const CGImage source = fourBytePicture(1, 2, CGImageAlphaInfo::NoneSkipLast, [](int, int y) {
        return y == 0 ? Pixel{255, 0, 0, 0} : Pixel{0, 0, 255, 0};
    });
    const Pixel red{255, 0, 0, 255};
    CGContext upwards =
        *CGContext::bitmap(1, 2, 0, CGColorSpace::deviceRGB(), bitmapInfo(CGImageAlphaInfo::PremultipliedLast));
    upwards.drawImage(source, CGRect{0, 0, 1, 2});
    EXPECT_EQ(pixelOf(upwards.makeImage(), 0, 0), red);
    CGContext downwards = canvas(1, 2);
    downwards.drawImage(source, CGRect{0, 0, 1, 2});
    EXPECT_EQ(pixelOf(downwards.makeImage(), 0, 1), red);
    CGContext view = canvas(1, 2);
    drawInRect(UIImage(source), view, {0, 0, 1, 2});
    EXPECT_EQ(pixelOf(view.makeImage(), 0, 0), red);
    CGContext turned = canvas(2, 1);
    drawInRect(UIImage(source, 1, UIImageOrientation::Right), turned, {0, 0, 2, 1}); // a quarter clockwise
    EXPECT_EQ(pixelOf(turned.makeImage(), 1, 0), red);
}

TEST(ImageDrawing, FractionalEdgesCoverByAreaAndKeepTheirColour)
{
    CGContext context = canvas(8, 8);
    context.drawImage(flat(3, 3, {200, 100, 50, 255}), CGRect{1.25, 2.5, 4.5, 3}); // x to 5.75, y to 5.5
    const CGImage result = context.makeImage();
    EXPECT_EQ(pixelOf(result, 3, 4), (Pixel{200, 100, 50, 255}));
    const auto covered = [&](int x, int y, double share) {
        for (std::size_t c = 0; c < 4; ++c)
            EXPECT_NEAR(pixelOf(result, x, y)[c], share * (std::array{200, 100, 50, 255}[c]), 1) << x << ", " << y;
    };
    covered(1, 4, 0.75);
    covered(3, 2, 0.5);
    covered(5, 5, 0.75 * 0.5);
    EXPECT_EQ(pixelOf(result, 0, 4), Pixel{});
    EXPECT_EQ(pixelOf(result, 6, 4), Pixel{});
}

TEST(ImageDrawing, ScalingEqualsTheResamplerAndPartsEqualTheWhole)
{
    const CGImage source = noisePicture(120, 90, CGImageAlphaInfo::PremultipliedLast);
    for (const IntSize size : {IntSize{40, 30}, IntSize{100, 80}, IntSize{300, 210}}) {
        const CGImage wanted = resampled(source, size);
        CGContext context = canvas(size.width, size.height);
        drawInRect(UIImage(source), context, {0, 0, static_cast<double>(size.width), static_cast<double>(size.height)});
        EXPECT_EQ(bytesOf(context.makeImage()), bytesOf(wanted));
        // A clip in the middle: the same pixels there.
        CGContext clipped = canvas(size.width, size.height);
        clipped.clipToRect({11, 9, 17, 13});
        drawInRect(UIImage(source), clipped, {0, 0, static_cast<double>(size.width), static_cast<double>(size.height)});
        const CGImage part = clipped.makeImage();
        EXPECT_EQ(bytesOf(part.subImage({11, 9, 17, 13})), bytesOf(wanted.subImage({11, 9, 17, 13})));
        EXPECT_EQ(pixelOf(part, 10, 9), Pixel{});
    }
}

TEST(ImageDrawing, SourceOverFollowsItsFormula)
{
    for (const double alpha : {1.0, 0.5, 0.2}) {
        const CGImage below = noisePicture(64, 64, CGImageAlphaInfo::PremultipliedLast, 5);
        const CGImage above = noisePicture(64, 64, CGImageAlphaInfo::PremultipliedLast, 6);
        CGContext context = canvas(64, 64);
        context.drawImage(below, CGAffineTransform());
        context.setAlpha(alpha);
        context.drawImage(above, CGAffineTransform());
        const CGImage result = context.makeImage();
        double worst = 0;
        for (int y = 0; y < 64; ++y) {
            for (int x = 0; x < 64; ++x) {
                const Pixel s = pixelOf(above, x, y);
                const Pixel d = pixelOf(below, x, y);
                for (std::size_t c = 0; c < 4; ++c) {
                    const double wanted = alpha * s[c] + d[c] * (1 - alpha * s[3] / 255.0);
                    worst = std::max(worst, std::abs(wanted - pixelOf(result, x, y)[c]));
                }
            }
        }
        EXPECT_LE(worst, alpha == 1 ? 0.5 : 0.52) << alpha;
    }
}

TEST(ImageDrawing, ObliquePicturesKeepGradientsAndHaveSoftEdges)
{
    // A ramp of 2 a pixel, turned by 30° about its centre: cubic convolution keeps straight lines.
    const CGImage ramp = fourBytePicture(100, 100, CGImageAlphaInfo::NoneSkipLast, [](int x, int y) {
        return Pixel{static_cast<std::uint8_t>(2 * x), static_cast<std::uint8_t>(2 * y), 7, 0};
    });
    const CGAffineTransform turn = CGAffineTransform::translation(-50, -50)
                                       .concatenating(CGAffineTransform::rotation(std::numbers::pi / 6))
                                       .concatenating(CGAffineTransform::translation(70, 70));
    CGContext context = canvas(140, 140);
    context.drawImage(ramp, turn);
    const CGImage result = context.makeImage();
    const CGAffineTransform back = *turn.inverted();
    int checked = 0;
    double total = 0;
    for (int y = 0; y < 140; ++y) {
        for (int x = 0; x < 140; ++x) {
            const CGPoint p = back.apply({x + 0.5, y + 0.5});
            total += pixelOf(result, x, y)[3] / 255.0;
            if (p.x < 3 || p.x > 97 || p.y < 3 || p.y > 97)
                continue;
            ++checked;
            EXPECT_NEAR(pixelOf(result, x, y)[0], 2 * (p.x - 0.5), 0.6);
            EXPECT_NEAR(pixelOf(result, x, y)[1], 2 * (p.y - 0.5), 0.6);
            EXPECT_EQ(pixelOf(result, x, y)[2], 7);
            EXPECT_EQ(pixelOf(result, x, y)[3], 255);
        }
    }
    EXPECT_GT(checked, 8000);
    EXPECT_NEAR(total, 100 * 100, 2); // the area does not change by turning
}

TEST(ImageDrawing, ObliqueReductionDoesNotAlias)
{
    // A fine checkerboard made four times smaller and turned is an even grey.
    const CGImage checks = fourBytePicture(200, 200, CGImageAlphaInfo::NoneSkipLast, [](int x, int y) {
        return (x + y) % 2 == 0 ? Pixel{255, 255, 255, 255} : Pixel{0, 0, 0, 255};
    });
    CGContext context = canvas(80, 80);
    context.translateCTM(40, 40);
    context.rotateCTM(0.4);
    context.scaleCTM(0.25, 0.25);
    context.drawImage(checks, CGAffineTransform::translation(-100, -100));
    const CGImage result = context.makeImage();
    for (int y = 30; y < 50; ++y) {
        for (int x = 30; x < 50; ++x)
            EXPECT_NEAR(pixelOf(result, x, y)[0], 127.5, 2.5);
    }
}

TEST(ImageDrawing, NearestTakesThePixelUnderTheCentre)
{
    const CGImage source = noisePicture(3, 3, CGImageAlphaInfo::NoneSkipLast);
    CGContext context = canvas(9, 9);
    context.setInterpolationQuality(CGContext::Interpolation::None);
    drawInRect(UIImage(source), context, {0, 0, 9, 9});
    const CGImage result = context.makeImage();
    for (int y = 0; y < 9; ++y) {
        for (int x = 0; x < 9; ++x)
            EXPECT_EQ(pixelOf(result, x, y)[0], pixelOf(source, x / 3, y / 3)[0]);
    }
}

TEST(ImageDrawing, MasksHideAndShow)
{
    const CGImage picture = flat(4, 1, {100, 200, 40, 255}, CGImageAlphaInfo::NoneSkipLast);
    const auto draw = [](const CGImage& image) {
        CGContext context = canvas(4, 1);
        drawInRect(UIImage(image), context, {0, 0, 4, 1});
        return context.makeImage();
    };
    const auto values = [](int x, int) { return x == 0 ? 0 : x == 1 ? 51 : 255; };
    const CGImage hidden = draw(picture.withMask(test::bytePicture(4, 1, values)));
    EXPECT_EQ(pixelOf(hidden, 0, 0), (Pixel{100, 200, 40, 255}));
    EXPECT_EQ(pixelOf(hidden, 1, 0), (Pixel{80, 160, 32, 204}));
    EXPECT_EQ(pixelOf(hidden, 2, 0), Pixel{});
    const CGImage shown = draw(picture.withMask(test::bytePicture(4, 1, values, CGColorSpace::alphaOnly())));
    EXPECT_EQ(pixelOf(shown, 0, 0), Pixel{});
    EXPECT_EQ(pixelOf(shown, 1, 0), (Pixel{20, 40, 8, 51}));
    EXPECT_EQ(pixelOf(shown, 2, 0), (Pixel{100, 200, 40, 255}));
}

TEST(ImageDrawing, HostileTransformsAreHarmless)
{
    const CGImage source = noisePicture(40, 30, CGImageAlphaInfo::Last);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    const CGImage clear = canvas(50, 50).makeImage();
    for (const CGAffineTransform& t :
         {CGAffineTransform{nan, 0, 0, 1, 0, 0}, CGAffineTransform{1, 0, 0, 1, inf, 0},
          CGAffineTransform{0, 0, 0, 0, 5, 5}, CGAffineTransform{1, 1, 1, 1, 0, 0}, CGAffineTransform{1, 0, 0, 0, 3, 3},
          CGAffineTransform{1e-12, 0, 0, 1, 3, 3}, CGAffineTransform{1, 0, 0, 1, 1e12, 0},
          CGAffineTransform{1e300, 1e300, -1e300, 1e300, 0, 0}.concatenating(CGAffineTransform::scaling(1e300, 1))}) {
        CGContext context = canvas(50, 50);
        context.drawImage(source, t);
        EXPECT_EQ(bytesOf(context.makeImage()), bytesOf(clear)) << t.a << " " << t.b << " " << t.tx;
    }
    // Enormous but sound: one source pixel fills the canvas.
    for (const double turn : {0.0, 0.5}) {
        CGContext context = canvas(50, 50);
        context.translateCTM(25, 25);
        context.rotateCTM(turn);
        context.scaleCTM(1e9, 1e9);
        context.drawImage(flat(3, 3, {9, 8, 7, 255}), CGAffineTransform::translation(-1.5, -1.5));
        EXPECT_EQ(pixelOf(context.makeImage(), 0, 0), (Pixel{9, 8, 7, 255})) << turn;
        EXPECT_EQ(pixelOf(context.makeImage(), 49, 49), (Pixel{9, 8, 7, 255})) << turn;
    }
}

} // namespace
} // namespace lamina
