#include "DrawingSupport.h"
#include "platform/image/drawing/UIImageDrawing.h"

#include <cmath>
#include <gtest/gtest.h>
#include <lcms2.h>
#include <limits>
#include <numbers>

namespace lamina {
namespace {

using test::byteOf;
using test::bytePicture;
using test::bytesOf;
using test::canvas;
using test::fourBytePicture;
using test::noisePicture;
using test::Pixel;
using test::pixelOf;

const UIColor kRed{1, 0, 0, 1};

CGContext bitmap(int width, int height, CGImageAlphaInfo alpha, CGBitmapInfo order = kCGBitmapByteOrderDefault,
                 const CGColorSpace& space = CGColorSpace::deviceRGB())
{
    return *CGContext::bitmap(width, height, 0, space, bitmapInfo(alpha, order));
}

TEST(Context, TakesOnlyFormatsThatItKnows)
{
    const CGColorSpace rgb = CGColorSpace::deviceRGB();
    const CGBitmapInfo premultiplied = bitmapInfo(CGImageAlphaInfo::PremultipliedLast);
    EXPECT_FALSE(CGContext::bitmap(0, 5, 0, rgb, premultiplied));
    EXPECT_FALSE(CGContext::bitmap(5, -1, 0, rgb, premultiplied));
    EXPECT_FALSE(CGContext::bitmap(5, 5, 19, rgb, premultiplied));
    EXPECT_FALSE(CGContext::bitmap(5, 5, 0, rgb, bitmapInfo(CGImageAlphaInfo::Last)));
    EXPECT_FALSE(CGContext::bitmap(5, 5, 0, rgb, premultiplied | kCGBitmapFloatComponents));
    EXPECT_FALSE(CGContext::bitmap(5, 5, 0, CGColorSpace::deviceGray(), premultiplied));
    EXPECT_FALSE(CGContext::bitmap(1 << 30, 1 << 30, 0, rgb, premultiplied));
    EXPECT_FALSE(CGContext::image({0, 5}, false, 1));
    EXPECT_FALSE(CGContext::image({5, std::numeric_limits<double>::infinity()}, false, 1));
    const CGContext padded = *CGContext::bitmap(5, 5, 64, rgb, premultiplied);
    EXPECT_EQ(padded.width(), 5);
    CGContext image = *CGContext::image({10.2, 0.1 * 3}, true, 10);
    EXPECT_EQ(image.width(), 102);
    EXPECT_EQ(image.height(), 3); // 0.30000000000000004 points are three pixels
    EXPECT_EQ(image.makeUIImage().scale(), 10);
    EXPECT_EQ(image.makeImage().alphaInfo(), CGImageAlphaInfo::NoneSkipLast);
    EXPECT_EQ(pixelOf(image.makeImage(), 0, 0), (Pixel{0, 0, 0, 255}));
}

TEST(Context, PutsComponentsWhereTheByteOrderSays)
{
    struct Case {
        CGImageAlphaInfo alpha;
        CGBitmapInfo order;
        Pixel wanted;
    };
    // 20, 40, 60 and full alpha
    for (const Case& c : {Case{CGImageAlphaInfo::PremultipliedLast, kCGBitmapByteOrderDefault, {20, 40, 60, 255}},
                          Case{CGImageAlphaInfo::PremultipliedLast, kCGBitmapByteOrder32Big, {20, 40, 60, 255}},
                          Case{CGImageAlphaInfo::PremultipliedFirst, kCGBitmapByteOrder32Big, {255, 20, 40, 60}},
                          Case{CGImageAlphaInfo::PremultipliedFirst, kCGBitmapByteOrder32Little, {60, 40, 20, 255}},
                          Case{CGImageAlphaInfo::NoneSkipFirst, kCGBitmapByteOrder32Little, {60, 40, 20, 255}},
                          Case{CGImageAlphaInfo::PremultipliedLast, kCGBitmapByteOrder32Little, {255, 60, 40, 20}}}) {
        CGContext context = bitmap(2, 2, c.alpha, c.order);
        context.setFillColor({20 / 255.0, 40 / 255.0, 60 / 255.0, 1});
        context.fillRect({0, 1, 1, 1}); // y upwards: the top left pixel
        const CGImage image = context.makeImage();
        EXPECT_EQ(pixelOf(image, 0, 0), c.wanted);
        // What is drawn back is read in the same order.
        CGContext again = canvas(2, 2);
        drawInRect(UIImage(image), again, {0, 0, 2, 2});
        EXPECT_EQ(pixelOf(again.makeImage(), 0, 0), (Pixel{20, 40, 60, 255}));
    }
}

TEST(Context, FillsByExactArea)
{
    CGContext context = canvas(6, 6);
    context.setFillColor(kRed);
    context.fillRect({1.5, 1.25, 3.25, 2.5}); // x to 4.75, y to 3.75
    const CGImage image = context.makeImage();
    EXPECT_EQ(pixelOf(image, 2, 2), (Pixel{255, 0, 0, 255}));
    EXPECT_EQ(pixelOf(image, 1, 2)[3], 128); // 0.5
    EXPECT_EQ(pixelOf(image, 4, 2)[3], 191); // 0.75
    EXPECT_EQ(pixelOf(image, 1, 1)[3], 96);  // 0.5 · 0.75 = 95.6
    EXPECT_EQ(pixelOf(image, 4, 3)[3], 143); // 0.75 · 0.75 = 143.4
    EXPECT_EQ(pixelOf(image, 0, 2)[3] + pixelOf(image, 5, 2)[3], 0);
    CGContext hard = canvas(6, 6);
    hard.setShouldAntialias(false);
    hard.fillRect({1.5, 1.6, 3.1, 2}); // centres from 1.5 up to below 4.6, rows from 1.6 to 3.6
    const CGImage sharp = hard.makeImage();
    int covered = 0;
    for (int y = 0; y < 6; ++y) {
        for (int x = 0; x < 6; ++x)
            covered += pixelOf(sharp, x, y)[3] == 255 ? 1 : pixelOf(sharp, x, y)[3] == 0 ? 0 : 1000;
    }
    EXPECT_EQ(covered, 4 * 2);
    EXPECT_EQ(pixelOf(sharp, 1, 2)[3], 255);
}

TEST(Context, TranslucentFillsRoundOnce)
{
    CGContext context = canvas(1, 1, true);
    context.setFillColor({0.2, 0.4, 0.6, 0.35});
    context.setAlpha(0.5);
    context.fillRect({0, 0, 1, 1});
    // 255·(1 - 0.175) + 255·0.175·(0.2, 0.4, 0.6) = 219.3, 228.2, 237.15
    EXPECT_EQ(pixelOf(context.makeImage(), 0, 0), (Pixel{219, 228, 237, 255}));
}

TEST(Context, ClearsToNothing)
{
    CGContext context = canvas(4, 1, true);
    context.clearRect({1, 0, 1.5, 1});
    const CGImage image = context.makeImage();
    EXPECT_EQ(pixelOf(image, 0, 0), (Pixel{255, 255, 255, 255}));
    EXPECT_EQ(pixelOf(image, 1, 0), Pixel{});
    EXPECT_EQ(pixelOf(image, 2, 0), (Pixel{127, 127, 127, 127})); // half is left
    CGContext opaque = *CGContext::image({2, 1}, true, 1);
    opaque.setFillColor(UIColor::white());
    opaque.fillRect({0, 0, 2, 1});
    opaque.clearRect({0, 0, 1, 1});
    EXPECT_EQ(pixelOf(opaque.makeImage(), 0, 0), (Pixel{0, 0, 0, 255}));
    EXPECT_EQ(pixelOf(opaque.makeImage(), 1, 0), (Pixel{255, 255, 255, 255}));
}

TEST(Context, PicturesKeepTheirBytesWhenDrawingGoesOn)
{
    CGContext context = canvas(3, 3);
    const CGImage before = context.makeImage();
    const CGImage same = context.makeImage();
    EXPECT_TRUE(before.sharesBytesWith(same));
    context.setFillColor(kRed);
    context.fillRect({0, 0, 3, 3});
    EXPECT_EQ(pixelOf(before, 1, 1), Pixel{});
    const CGImage after = context.makeImage();
    EXPECT_EQ(pixelOf(after, 1, 1), (Pixel{255, 0, 0, 255}));
    EXPECT_FALSE(before.sharesBytesWith(after));
}

TEST(Context, GreyBitmapsTakeLumaAndKeepGrey)
{
    CGContext context = bitmap(4, 1, CGImageAlphaInfo::None, kCGBitmapByteOrderDefault, CGColorSpace::deviceGray());
    context.setFillColor({1, 0, 0, 1});
    context.fillRect({0, 0, 1, 1});
    context.setFillColor({0, 1, 0, 0.5});
    context.fillRect({1, 0, 1, 1});
    context.drawImage(bytePicture(1, 1, [](int, int) { return 77; }), CGRect{2, 0, 1, 1});
    context.drawImage(fourBytePicture(1, 1, CGImageAlphaInfo::Last,
                                      [](int, int) {
                                          return Pixel{200, 100, 50, 102};
                                      }),
                      CGRect{3, 0, 1, 1});
    const CGImage image = context.makeImage();
    EXPECT_EQ(byteOf(image, 0, 0), 54); // 0.2126
    EXPECT_EQ(byteOf(image, 1, 0), 91); // 0.7152 / 2
    EXPECT_EQ(byteOf(image, 2, 0), 77);
    EXPECT_NEAR(byteOf(image, 3, 0), (0.2126 * 200 + 0.7152 * 100 + 0.0722 * 50) * 0.4, 1);
}

TEST(Context, AlphaBitmapsKeepCoverageAlone)
{
    CGContext context = bitmap(3, 1, CGImageAlphaInfo::Only, kCGBitmapByteOrderDefault, CGColorSpace::alphaOnly());
    context.setFillColor({0.1, 0.9, 0.3, 0.4});
    context.fillRect({0, 0, 2, 1});
    context.drawImage(bytePicture(
                          1, 1, [](int, int) { return 51; }, CGColorSpace::alphaOnly()),
                      CGRect{1, 0, 1, 1});
    context.drawImage(fourBytePicture(1, 1, CGImageAlphaInfo::Last,
                                      [](int, int) {
                                          return Pixel{255, 0, 0, 130};
                                      }),
                      CGRect{2, 0, 1, 1});
    const CGImage image = context.makeImage();
    EXPECT_EQ(byteOf(image, 0, 0), 102);
    EXPECT_NEAR(byteOf(image, 1, 0), 51 + 102 * 0.8, 0.6);
    EXPECT_EQ(byteOf(image, 2, 0), 130);
}

TEST(Context, CMYKBitmapsKeepInksAndMixByAlpha)
{
    CGContext context = bitmap(4, 1, CGImageAlphaInfo::None, kCGBitmapByteOrderDefault, CGColorSpace::deviceCMYK());
    EXPECT_EQ(pixelOf(context.makeImage(), 0, 0), Pixel{}); // no ink
    CGImageLayout layout = CGImageLayout::rgba(1, 1, CGImageAlphaInfo::None);
    layout.colorSpace = CGColorSpace::deviceCMYK();
    PixelBuffer inks = PixelBuffer::allocate(4);
    const std::uint8_t values[4] = {200, 150, 100, 220}; // no RGB colour comes back to these
    std::copy(values, values + 4, inks.data());
    context.drawImage(CGImage::make(layout, std::move(inks)), CGRect{0, 0, 1, 1});
    context.setFillColor({1, 0.5, 0, 1});
    context.fillRect({1, 0, 1, 1});
    context.drawImage(fourBytePicture(1, 1, CGImageAlphaInfo::Last,
                                      [](int, int) {
                                          return Pixel{0, 0, 0, 51};
                                      }),
                      CGRect{2, 0, 1, 1});
    context.setAlpha(0.5);
    context.drawImage(fourBytePicture(1, 1, CGImageAlphaInfo::NoneSkipLast,
                                      [](int, int) {
                                          return Pixel{102, 204, 51, 0};
                                      }),
                      CGRect{3, 0, 1, 1});
    const CGImage image = context.makeImage();
    EXPECT_EQ(pixelOf(image, 0, 0), (Pixel{200, 150, 100, 220}));
    EXPECT_EQ(pixelOf(image, 1, 0), (Pixel{0, 128, 255, 0}));
    EXPECT_EQ(pixelOf(image, 2, 0), (Pixel{0, 0, 0, 51}));
    // K = 0.2, C = 1 - 102/204, Y = 1 - 51/204; all halved
    EXPECT_EQ(pixelOf(image, 3, 0), (Pixel{64, 0, 96, 26}));
}

TEST(Context, ProfilesOfTheBitmapTakePart)
{
    // A grey bitmap whose values are linear light.
    cmsToneCurve* linear = cmsBuildGamma(nullptr, 1.0);
    cmsHPROFILE profile = cmsCreateGrayProfile(cmsD50_xyY(), linear);
    cmsUInt32Number size = 0;
    ASSERT_TRUE(cmsSaveProfileToMem(profile, nullptr, &size));
    std::vector<std::uint8_t> bytes(size);
    ASSERT_TRUE(cmsSaveProfileToMem(profile, bytes.data(), &size));
    cmsCloseProfile(profile);
    cmsFreeToneCurve(linear);
    const CGColorSpace space = CGColorSpace::withProfile(CGColorSpace::Model::Gray, std::move(bytes));
    CGContext context = bitmap(3, 1, CGImageAlphaInfo::None, kCGBitmapByteOrderDefault, space);
    context.setFillColor(UIColor::fromWhite(128 / 255.0, 1));
    context.fillRect({0, 0, 1, 1});
    context.drawImage(fourBytePicture(1, 1, CGImageAlphaInfo::Last,
                                      [](int, int) {
                                          return Pixel{128, 128, 128, 102};
                                      }),
                      CGRect{1, 0, 1, 1});
    context.drawImage(bytePicture(
                          1, 1, [](int, int) { return 99; }, space),
                      CGRect{2, 0, 1, 1});
    const CGImage image = context.makeImage();
    EXPECT_EQ(image.colorSpace(), space);
    EXPECT_NEAR(byteOf(image, 0, 0), 55, 1); // 255 · ((128/255 + 0.055) / 1.055)^2.4
    EXPECT_NEAR(byteOf(image, 1, 0), 22, 1); // 0.4 of it
    EXPECT_EQ(byteOf(image, 2, 0), 99);      // its own space: untouched
}

TEST(Context, ClipsIntersect)
{
    CGContext context = canvas(10, 10);
    context.saveGState();
    context.clipToRect({2, 2, 6, 6});
    context.clipToRect({0, 0, 5.5, 10});
    EXPECT_EQ(context.clipBounds(), (IntRect{2, 2, 4, 6}));
    context.clipToPath(UIBezierPath::withRect({0, 3.5, 10, 10}));
    context.setFillColor(kRed);
    context.fillRect({0, 0, 10, 10});
    context.restoreGState();
    EXPECT_EQ(context.clipBounds(), (IntRect{0, 0, 10, 10}));
    context.restoreGState(); // nothing was saved
    const CGImage image = context.makeImage();
    EXPECT_EQ(pixelOf(image, 2, 4)[3], 255);
    EXPECT_EQ(pixelOf(image, 5, 4)[3], 128);
    EXPECT_EQ(pixelOf(image, 4, 3)[3], 128);
    EXPECT_EQ(pixelOf(image, 5, 3)[3], 64);
    EXPECT_EQ(pixelOf(image, 1, 4)[3] + pixelOf(image, 6, 4)[3] + pixelOf(image, 4, 2)[3] + pixelOf(image, 4, 8)[3], 0);
    context.clipToRect({20, 20, 5, 5});
    EXPECT_TRUE(context.clipBounds().isEmpty());
    context.fillRect({0, 0, 30, 30});
    EXPECT_EQ(bytesOf(context.makeImage()), bytesOf(image));
}

TEST(Context, MasksClipByWhatTheyHold)
{
    const auto draw = [](const CGImage& mask, bool upwards) {
        CGContext context = upwards ? bitmap(1, 2, CGImageAlphaInfo::PremultipliedLast) : canvas(1, 2);
        context.clipToMask({0, 0, 1, 2}, mask);
        context.setFillColor(kRed);
        context.fillRect({0, 0, 1, 2});
        const CGImage image = context.makeImage();
        return std::pair{pixelOf(image, 0, 0)[3], pixelOf(image, 0, 1)[3]};
    };
    const std::pair<std::uint8_t, std::uint8_t> topShows{255, 40};
    const auto values = [](int, int y) { return y == 0 ? 255 : 40; };
    for (const bool upwards : {false, true}) {
        EXPECT_EQ(draw(bytePicture(1, 2, values), upwards), topShows);
        EXPECT_EQ(draw(bytePicture(1, 2, values, CGColorSpace::alphaOnly()), upwards), topShows);
        EXPECT_EQ(draw(fourBytePicture(1, 2, CGImageAlphaInfo::Last,
                                       [&](int x, int y) {
                                           return Pixel{9, 9, 9, static_cast<std::uint8_t>(values(x, y))};
                                       }),
                       upwards),
                  topShows);
    }
}

TEST(Context, LayersCompositeAsOne)
{
    // Two overlapping squares at half alpha: inside a layer the overlap is no darker.
    CGContext context = canvas(6, 1, true);
    context.setAlpha(0.5);
    context.clipToRect({0, 0, 4.5, 1});
    context.beginTransparencyLayer();
    context.setFillColor(UIColor::black());
    context.fillRect({0, 0, 3, 1});
    context.saveGState(); // left open: the end of the layer takes it along
    context.setAlpha(0.2);
    context.setAlpha(1);
    context.setFillColor(kRed);
    context.fillRect({2, 0, 4, 1});
    context.endTransparencyLayer();
    context.endTransparencyLayer(); // one too many does nothing
    const CGImage image = context.makeImage();
    const auto half = [](Pixel p) { return p == Pixel{127, 127, 127, 255} || p == Pixel{128, 128, 128, 255}; };
    EXPECT_TRUE(half(pixelOf(image, 0, 0)));
    EXPECT_NEAR(pixelOf(image, 2, 0)[1], 127.5, 0.51);
    EXPECT_EQ(pixelOf(image, 2, 0)[0], 255);
    EXPECT_NEAR(pixelOf(image, 4, 0)[1], 255 * 0.75, 1); // the clip's half pixel
    EXPECT_EQ(pixelOf(image, 5, 0), (Pixel{255, 255, 255, 255}));
}

TEST(Context, LayersMayBeNestedBoundedAndEmpty)
{
    CGContext context = canvas(10, 10);
    context.beginTransparencyLayer(CGRect{2, 2, 3, 3});
    EXPECT_EQ(context.clipBounds(), (IntRect{2, 2, 3, 3}));
    context.setAlpha(0.5);
    context.beginTransparencyLayer();
    context.setFillColor(kRed);
    context.fillRect({0, 0, 10, 10});
    context.endTransparencyLayer();
    context.endTransparencyLayer();
    context.beginTransparencyLayer(CGRect{20, 20, 3, 3});
    context.fillRect({0, 0, 100, 100});
    context.endTransparencyLayer();
    const CGImage image = context.makeImage();
    EXPECT_EQ(pixelOf(image, 3, 3), (Pixel{128, 0, 0, 128}));
    EXPECT_EQ(pixelOf(image, 5, 5), Pixel{});
    EXPECT_EQ(context.clipBounds(), (IntRect{0, 0, 10, 10}));
}

TEST(Context, ShadowsAreGaussianAndFallWhereTheyAreTold)
{
    // A half plane throws the integral of the Gaussian; standard deviation blur / 2 points, 2 pixels a point.
    CGContext context = *CGContext::image({60, 30}, false, 2);
    context.setShadow({10, 0}, 6, UIColor{0, 0, 1, 0.8});
    context.setFillColor(kRed);
    context.fillRect({-100, -100, 120, 200}); // edge at 20 points, its shadow's at 30
    const CGImage image = context.makeImage();
    EXPECT_EQ(pixelOf(image, 30, 30), (Pixel{255, 0, 0, 255}));
    for (int x = 41; x < 110; ++x) {
        const double wanted = 255 * 0.8 * 0.5 * std::erfc((x + 0.5 - 60) / (6 * std::numbers::sqrt2));
        EXPECT_NEAR(pixelOf(image, x, 30)[3], wanted, 2) << x;
        EXPECT_EQ(pixelOf(image, x, 30)[0], 0);
    }
    CGContext wide = canvas(400, 9);
    wide.setShadow({0, 0}, 80, UIColor::black());
    wide.setFillColor(UIColor::white());
    wide.fillRect({-1000, -1000, 1200, 2000});
    const CGImage soft = wide.makeImage();
    for (int x = 201; x < 400; ++x)
        EXPECT_NEAR(pixelOf(soft, x, 4)[3], 255 * 0.5 * std::erfc((x + 0.5 - 200) / (40 * std::numbers::sqrt2)), 2)
            << x;
    // A hard shadow of something that the clip itself hides.
    CGContext clipped = canvas(10, 4);
    clipped.clipToRect({5, 0, 5, 4});
    clipped.setShadow({5, 1}, 0, UIColor::black());
    clipped.setFillColor(kRed);
    clipped.fillRect({1, 1, 2, 2});
    const CGImage shadow = clipped.makeImage();
    EXPECT_EQ(pixelOf(shadow, 6, 2), (Pixel{0, 0, 0, 255}));
    EXPECT_EQ(pixelOf(shadow, 8, 2), Pixel{});
    EXPECT_EQ(pixelOf(shadow, 1, 1), Pixel{});
}

TEST(Context, HostileGeometryIsHarmless)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    CGContext context = canvas(20, 20);
    const CGImage clear = context.makeImage();
    context.setFillColor(kRed);
    for (const CGRect& rect :
         {CGRect{nan, 0, 5, 5}, CGRect{0, 0, nan, 5}, CGRect{0, 0, -3, 5}, CGRect{1e12, 0, 5, 5}}) {
        context.fillRect(rect);
        context.fillPath(UIBezierPath::withRect(rect));
        context.drawImage(noisePicture(2, 2, CGImageAlphaInfo::Last), rect);
    }
    context.setShadow({inf, nan}, -1, kRed);
    context.setAlpha(nan);
    context.fillRect({0, 0, 5, 5});
    EXPECT_EQ(bytesOf(context.makeImage()), bytesOf(clear));
    context.setAlpha(7);
    context.setShadow({1e9, -1e9}, 1e9, UIColor::black());
    context.fillRect({-1e15, -1e15, 2e15, 2e15});
    EXPECT_EQ(pixelOf(context.makeImage(), 10, 10), (Pixel{255, 0, 0, 255}));
    context.concatCTM({nan, 0, 0, 1, 0, 0});
    context.clipToRect({0, 0, 5, 5});
    EXPECT_TRUE(context.clipBounds().isEmpty());
}

} // namespace
} // namespace lamina
