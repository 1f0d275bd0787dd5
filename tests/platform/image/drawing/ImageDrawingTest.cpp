#include "Canvas.h"
#include "platform/base/CGAffineTransform.h"
#include "platform/image/drawing/Resampling.h"
#include "platform/image/drawing/UIImageDrawing.h"
#include "platform/image/pixels/CGColorSpace.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numbers>

namespace lamina::test {
namespace {

TEST(ImageDrawing, MirrorsQuarterTurnsAndWholePlacesAreExact)
{
    const CGImage source = noisePicture(11, 6, CGImageAlphaInfo::PremultipliedLast);
    const auto turned = [](double degrees) { return CGAffineTransform::rotation(degrees * std::numbers::pi / 180); };
    const CGAffineTransform cases[] = {
        CGAffineTransform::translation(4, 7),
        {-1, 0, 0, 1, 11, 0},
        {1, 0, 0, -1, 0, 6},
        turned(90).concatenating(CGAffineTransform::translation(6, 0)),
        turned(180).concatenating(CGAffineTransform::translation(11, 6)),
        turned(-90).concatenating(CGAffineTransform::translation(0, 11)),
        turned(37).concatenating(turned(-37)), // an oblique detour and back costs nothing either
        {0, 1, 1, 0, 0, 0},
    };
    for (const CGAffineTransform& t : cases) {
        const CGImage result = drawn(15, 13, [&](CGContext& context) { context.drawImage(source, t); });
        const CGAffineTransform back = *t.inverted();
        int wrong = 0;
        for (int y = 0; y < 13; ++y) {
            for (int x = 0; x < 15; ++x) {
                const CGPoint from = back.apply({x + 0.5, y + 0.5});
                const bool inside = from.x > 0 && from.x < 11 && from.y > 0 && from.y < 6;
                const Rgba wanted =
                    inside ? pixelAt(source, static_cast<int>(from.x), static_cast<int>(from.y)) : Rgba{};
                wrong += pixelAt(result, x, y) != wanted ? 1 : 0;
            }
        }
        EXPECT_EQ(wrong, 0) << t.a << ' ' << t.b << ' ' << t.c << ' ' << t.d;
    }
}

TEST(ImageDrawing, InARectangleIsUprightByTheTag)
{
    const CGImage source = makePicture(1, 2, [](int, int y) {
        return y == 0 ? Rgba{255, 0, 0, 0} : Rgba{0, 0, 255, 0};
    });
    const CGImage upright = drawn(1, 2, [&](CGContext& context) { drawInRect(UIImage(source), context, whole(1, 2)); });
    EXPECT_EQ(componentGrid(upright, kRed), (Grid{{255}, {0}}));
    const UIImage right(source, 1, UIImageOrientation::Right); // a quarter clockwise
    const CGImage turned = drawn(2, 1, [&](CGContext& context) { drawInRect(right, context, whole(2, 1)); });
    EXPECT_EQ(componentGrid(turned, kRed), (Grid{{0, 255}}));
}

TEST(ImageDrawing, ScalingEqualsTheResamplerAndPartsEqualTheWhole)
{
    const CGImage source = noisePicture(120, 90, CGImageAlphaInfo::PremultipliedLast);
    for (const IntSize size : {IntSize{40, 30}, IntSize{100, 80}, IntSize{300, 210}}) {
        const CGImage wanted = resampled(source, size);
        const auto drawnIn = [&](const CGRect& clip) {
            return drawn(size.width, size.height, [&](CGContext& context) {
                context.clipToRect(clip);
                drawInRect(UIImage(source), context, whole(size.width, size.height));
            });
        };
        EXPECT_TRUE(imagesMatch(drawnIn(whole(size.width, size.height)), wanted));
        // A clip in the middle: the same pixels there.
        const CGImage part = drawnIn({11, 9, 17, 13});
        EXPECT_TRUE(imagesMatch(part.subImage({11, 9, 17, 13}), wanted.subImage({11, 9, 17, 13})));
        EXPECT_EQ(pixelAt(part, 10, 9), Rgba{});
    }
}

TEST(ImageDrawing, SourceOverFollowsItsFormula)
{
    const CGImage below = noisePicture(64, 64, CGImageAlphaInfo::PremultipliedLast, 5);
    const CGImage above = noisePicture(64, 64, CGImageAlphaInfo::PremultipliedLast, 6);
    for (const double alpha : {1.0, 0.5, 0.2}) {
        const CGImage result = drawn(64, 64, [&](CGContext& context) {
            context.drawImage(below, CGAffineTransform());
            context.setAlpha(alpha);
            context.drawImage(above, CGAffineTransform());
        });
        double worst = 0;
        for (int i = 0; i < 64 * 64; ++i) {
            const Rgba s = pixelAt(above, i % 64, i / 64);
            const Rgba d = pixelAt(below, i % 64, i / 64);
            const Rgba got = pixelAt(result, i % 64, i / 64);
            for (std::size_t c = 0; c < 4; ++c)
                worst = std::max(worst, std::abs(alpha * s[c] + d[c] * (1 - alpha * s[3] / 255.0) - got[c]));
        }
        EXPECT_LE(worst, alpha == 1 ? 0.5 : 0.52) << alpha;
    }
}

TEST(ImageDrawing, ObliqueReductionDoesNotAlias)
{
    // A fine checkerboard made four times smaller and turned is an even grey.
    const CGImage checks = makePicture(200, 200, [](int x, int y) {
        return (x + y) % 2 == 0 ? Rgba{255, 255, 255, 255} : Rgba{0, 0, 0, 255};
    });
    const CGImage result = drawn(80, 80, [&](CGContext& context) {
        context.translateCTM(40, 40);
        context.rotateCTM(0.4);
        context.scaleCTM(0.25, 0.25);
        context.drawImage(checks, CGAffineTransform::translation(-100, -100));
    });
    EXPECT_TRUE(imagesMatch(result.subImage({30, 30, 20, 20}), solidPicture(20, 20, {128, 128, 128, 255}), 3));
}

TEST(ImageDrawing, NearestTakesThePixelUnderTheCentre)
{
    const CGImage source = chartPicture(3, 3, CGImageAlphaInfo::NoneSkipLast);
    const CGImage result = drawn(9, 9, [&](CGContext& context) {
        context.setInterpolationQuality(CGContext::Interpolation::None);
        drawInRect(UIImage(source), context, whole(9, 9));
    });
    EXPECT_TRUE(imagesMatch(result, makePicture(9, 9, [&](int x, int y) { return pixelAt(source, x / 3, y / 3); })));
}

TEST(ImageDrawing, MasksHideAndShow)
{
    const CGImage picture = solidPicture(4, 1, {100, 200, 40, 255}, CGImageAlphaInfo::NoneSkipLast);
    const auto seenThrough = [&](const CGColorSpace& space) {
        const UIImage masked(picture.withMask(bytePicture(
            4, 1, [](int x, int) { return std::min(51 * x * x, 255); }, space)));
        return pixelsOf(drawn(4, 1, [&](CGContext& context) { drawInRect(masked, context, whole(4, 1)); }));
    };
    const Rgba shown{100, 200, 40, 255};
    const Rgba some{80, 160, 32, 204};
    const Rgba few{20, 40, 8, 51};
    EXPECT_EQ(seenThrough(CGColorSpace::deviceGray()), (std::vector<Rgba>{shown, some, few, {}}));
    EXPECT_EQ(seenThrough(CGColorSpace::alphaOnly()), (std::vector<Rgba>{{}, few, some, shown}));
}

TEST(ImageDrawing, HostileTransformsAreHarmless)
{
    const CGImage source = noisePicture(40, 30, CGImageAlphaInfo::Last);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    for (const CGAffineTransform& t :
         {CGAffineTransform{nan, 0, 0, 1, 0, 0}, CGAffineTransform{1, 0, 0, 1, inf, 0},
          CGAffineTransform{0, 0, 0, 0, 5, 5}, CGAffineTransform{1, 1, 1, 1, 0, 0}, CGAffineTransform{1, 0, 0, 0, 3, 3},
          CGAffineTransform{1e-12, 0, 0, 1, 3, 3}, CGAffineTransform{1, 0, 0, 1, 1e12, 0},
          CGAffineTransform{1e300, 1e300, -1e300, 1e300, 0, 0}.concatenating(CGAffineTransform::scaling(1e300, 1))}) {
        const CGImage result = drawn(50, 50, [&](CGContext& context) { context.drawImage(source, t); });
        EXPECT_TRUE(imagesMatch(result, canvas(50, 50).makeImage())) << t.a << " " << t.b << " " << t.tx;
    }
    // Enormous but sound: one source pixel fills the canvas.
    for (const double turn : {0.0, 0.5}) {
        const CGImage result = drawn(50, 50, [&](CGContext& context) {
            context.translateCTM(25, 25);
            context.rotateCTM(turn);
            context.scaleCTM(1e9, 1e9);
            context.drawImage(solidPicture(3, 3, {9, 8, 7, 255}), CGAffineTransform::translation(-1.5, -1.5));
        });
        EXPECT_TRUE(imagesMatch(result, solidPicture(50, 50, {9, 8, 7, 255}))) << turn;
    }
}

} // namespace
} // namespace lamina::test
