#include "Canvas.h"
#include "EveryProcessor.h"
#include "platform/base/UIColor.h"
#include "platform/image/drawing/Resampling.h"
#include "platform/image/drawing/UIBezierPath.h"
#include "platform/image/drawing/UIImageDrawing.h"
#include "platform/image/pixels/CGColorSpace.h"

#include <cmath>
#include <cstddef>
#include <functional>
#include <lcms2.h>
#include <limits>
#include <numbers>
#include <optional>
#include <utility>

namespace lamina::test {
namespace {

using Alpha = CGImageAlphaInfo;

const UIColor kRedColor{1, 0, 0, 1};

CGContext bitmap(int width, int height, Alpha alpha, CGBitmapInfo order = kCGBitmapByteOrderDefault,
                 const CGColorSpace& space = CGColorSpace::deviceRGB())
{
    return *CGContext::bitmap(width, height, 0, space, bitmapInfo(alpha, order));
}

void fill(CGContext& context, const UIColor& color, const CGRect& rect)
{
    context.setFillColor(color);
    context.fillRect(rect);
}

TEST(Context, TakesOnlyFormatsThatItKnows)
{
    const CGColorSpace rgb = CGColorSpace::deviceRGB();
    const CGBitmapInfo premultiplied = bitmapInfo(Alpha::PremultipliedLast);
    EXPECT_FALSE(CGContext::bitmap(0, 5, 0, rgb, premultiplied));
    EXPECT_FALSE(CGContext::bitmap(5, 5, 19, rgb, premultiplied));
    EXPECT_FALSE(CGContext::bitmap(5, 5, 0, rgb, bitmapInfo(Alpha::Last)));
    EXPECT_FALSE(CGContext::bitmap(5, 5, 0, rgb, premultiplied | kCGBitmapFloatComponents));
    EXPECT_FALSE(CGContext::bitmap(5, 5, 0, CGColorSpace::deviceGray(), premultiplied));
    EXPECT_FALSE(CGContext::bitmap(1 << 30, 1 << 30, 0, rgb, premultiplied));
    EXPECT_FALSE(CGContext::image({0, 5}, false, 1));
    EXPECT_FALSE(CGContext::image({5, std::numeric_limits<double>::infinity()}, false, 1));
    EXPECT_TRUE(CGContext::bitmap(5, 5, 64, rgb, premultiplied));
    const UIImage image = CGContext::image({10.2, 0.1 * 3}, true, 10)->makeUIImage();
    EXPECT_EQ(image.pixelSize(), (IntSize{102, 3})); // 0.30000000000000004 points are three pixels
    EXPECT_EQ(image.scale(), 10);
    EXPECT_EQ(image.cgImage().alphaInfo(), Alpha::NoneSkipLast);
    EXPECT_EQ(pixelAt(image.cgImage(), 0, 0), (Rgba{0, 0, 0, 255}));
}

TEST(Context, PutsComponentsWhereTheByteOrderSays)
{
    const struct {
        Alpha alpha;
        CGBitmapInfo order;
        Rgba wanted; ///< of 20, 40, 60 and full alpha
    } cases[] = {{Alpha::PremultipliedLast, kCGBitmapByteOrderDefault, {20, 40, 60, 255}},
                 {Alpha::PremultipliedFirst, kCGBitmapByteOrder32Big, {255, 20, 40, 60}},
                 {Alpha::NoneSkipFirst, kCGBitmapByteOrder32Little, {60, 40, 20, 255}},
                 {Alpha::PremultipliedLast, kCGBitmapByteOrder32Little, {255, 60, 40, 20}}};
    for (const auto& c : cases) {
        CGContext context = bitmap(2, 2, c.alpha, c.order);
        fill(context, {20 / 255.0, 40 / 255.0, 60 / 255.0, 1}, {0, 1, 1, 1}); // y upwards: the top left pixel
        const CGImage image = context.makeImage();
        EXPECT_EQ(pixelAt(image, 0, 0), c.wanted);
        // What is drawn back is read in the same order.
        const CGImage again = drawn(2, 2, [&](CGContext& to) { drawInRect(UIImage(image), to, whole(2, 2)); });
        EXPECT_EQ(pixelAt(again, 0, 0), (Rgba{20, 40, 60, 255}));
    }
}

TEST(Context, FillsByExactAreaOrByCentres)
{
    const auto filled = [](bool antialias) {
        return componentGrid(drawn(6, 5,
                                   [&](CGContext& context) {
                                       context.setShouldAntialias(antialias);
                                       fill(context, kRedColor, {1.5, 1.25, 3.25, 2.5}); // x to 4.75, y to 3.75
                                   }),
                             kAlpha);
    };
    EXPECT_EQ(filled(true), (Grid{{0, 0, 0, 0, 0, 0},
                                  {0, 96, 191, 191, 143, 0}, // three quarters, and half and three quarters of them
                                  {0, 128, 255, 255, 191, 0},
                                  {0, 96, 191, 191, 143, 0},
                                  {0, 0, 0, 0, 0, 0}}));
    EXPECT_EQ(filled(false), (Grid{{0, 0, 0, 0, 0, 0},
                                   {0, 255, 255, 255, 255, 0},
                                   {0, 255, 255, 255, 255, 0},
                                   {0, 255, 255, 255, 255, 0},
                                   {0, 0, 0, 0, 0, 0}}));
}

TEST(Context, TranslucentFillsRoundOnceAndClearingLeavesTheRest)
{
    const CGImage image = drawn(4, 1, [](CGContext& context) {
        fill(context, UIColor::white(), whole(4, 1));
        context.clearRect({1, 0, 1.5, 1});
        context.setAlpha(0.5);
        fill(context, {0.2, 0.4, 0.6, 0.35}, {3, 0, 1, 1});
    });
    // 255·(1 - 0.175) + 255·0.175·(0.2, 0.4, 0.6) = 219.3, 228.2, 237.15; half of a pixel is left
    EXPECT_EQ(pixelsOf(image),
              (std::vector<Rgba>{{255, 255, 255, 255}, {}, {127, 127, 127, 127}, {219, 228, 237, 255}}));
    CGContext opaque = *CGContext::image({2, 1}, true, 1);
    fill(opaque, UIColor::white(), whole(2, 1));
    opaque.clearRect({0, 0, 1, 1});
    EXPECT_EQ(pixelsOf(opaque.makeImage()), (std::vector<Rgba>{{0, 0, 0, 255}, {255, 255, 255, 255}}));
}

TEST(Context, CopyAndClearReplaceWhatIsThereByThePartThatIsCovered)
{
    const UIImage picture(drawn(4, 4, [](CGContext& c) { fill(c, {0, 0, 1, 0.25}, whole(4, 4)); }));
    const auto color = [](CGContext& c) { fill(c, {0, 0, 1, 0.25}, {0.5, 0, 4, 4}); };
    const auto image = [&](CGContext& c) { drawInRect(picture, c, {0.5, 0, 4, 4}); };
    const auto group = [&](CGContext& c) {
        c.clipToRect({0.5, 0, 4, 4});
        c.beginTransparencyLayer();
        fill(c, {0, 0, 1, 0.25}, {-5, 0, 20, 4}); // in a layer of its own the mode is the usual one
        fill(c, {0, 0, 1, 0}, {-5, 0, 20, 4});
        c.endTransparencyLayer();
    };
    for (const std::function<void(CGContext&)>& draw : {std::function<void(CGContext&)>(color), {image}, {group}}) {
        for (const bool opaque : {false, true}) {
            const auto result = [&](CGBlendMode mode) {
                CGContext context = *CGContext::image({8, 4}, opaque, 1);
                fill(context, kRedColor, whole(8, 4));
                context.setShadow({0, 0}, 0, UIColor::black());
                context.setBlendMode(mode);
                draw(context);
                return context.makeImage();
            };
            const CGImage copied = result(CGBlendMode::Copy);
            const auto rgba = [&](Rgba clear) { return opaque ? Rgba{clear[0], clear[1], clear[2], 255} : clear; };
            EXPECT_EQ(pixelAt(copied, 2, 1), rgba({0, 0, 64, 64}));
            EXPECT_EQ(pixelAt(copied, 0, 1), rgba({127, 0, 32, 159})); // half of each
            EXPECT_EQ(pixelAt(copied, 6, 1), (Rgba{255, 0, 0, 255}));
            EXPECT_EQ(pixelAt(result(CGBlendMode::Clear), 2, 1), rgba({0, 0, 0, 0}));
        }
    }
}

TEST(Context, PicturesKeepTheirBytesWhenDrawingGoesOn)
{
    CGContext context = canvas(3, 3);
    const CGImage before = context.makeImage();
    EXPECT_TRUE(before.sharesBytesWith(context.makeImage()));
    fill(context, kRedColor, whole(3, 3));
    EXPECT_EQ(pixelAt(before, 1, 1), Rgba{});
    EXPECT_EQ(pixelAt(context.makeImage(), 1, 1), (Rgba{255, 0, 0, 255}));
}

/// A grey space whose values are linear light.
CGColorSpace linearGray()
{
    cmsToneCurve* linear = cmsBuildGamma(nullptr, 1.0);
    cmsHPROFILE profile = cmsCreateGrayProfile(cmsD50_xyY(), linear);
    cmsUInt32Number size = 0;
    cmsSaveProfileToMem(profile, nullptr, &size);
    std::vector<std::uint8_t> bytes(size);
    EXPECT_TRUE(cmsSaveProfileToMem(profile, bytes.data(), &size));
    cmsCloseProfile(profile);
    cmsFreeToneCurve(linear);
    return CGColorSpace::withProfile(CGColorSpace::Model::Gray, std::move(bytes));
}

TEST(Context, BitmapsOfOneComponentTakeLumaOrCoverage)
{
    const auto drawInto = [](const CGColorSpace& space, Alpha alpha, const CGImage& own, Rgba straight) {
        CGContext context = bitmap(4, 1, alpha, kCGBitmapByteOrderDefault, space);
        fill(context, {1, 0, 0, 1}, {0, 0, 1, 1});
        fill(context, {0.5, 0.5, 0.5, 0.4}, {1, 0, 1, 1});
        context.drawImage(own, CGRect{2, 0, 1, 1}); // of the bitmap's own space: untouched
        context.drawImage(solidPicture(1, 1, straight), CGRect{3, 0, 1, 1});
        const CGImage image = context.makeImage();
        EXPECT_EQ(image.colorSpace(), space);
        return componentGrid(image);
    };
    const auto one = [](int value, const CGColorSpace& space) {
        return bytePicture(
            1, 1, [=](int, int) { return value; }, space);
    };
    const CGColorSpace gray = CGColorSpace::deviceGray();
    // 0.2126 of 255; 0.4 of 127.5; (0.2126 · 200 + 0.7152 · 100 + 0.0722 · 50) · 0.4
    EXPECT_EQ(drawInto(gray, Alpha::None, one(77, gray), {200, 100, 50, 102}), (Grid{{54, 51, 77, 47}}));
    // 255 · ((128/255 + 0.055) / 1.055)^2.4 = 55, and 0.4 of it
    const CGColorSpace linear = linearGray();
    const Grid light = drawInto(linear, Alpha::None, one(99, linear), {128, 128, 128, 102});
    EXPECT_NEAR(light[0][1], 22, 1);
    EXPECT_EQ(light[0][2], 99);
    EXPECT_NEAR(light[0][3], 22, 1);
    const CGColorSpace coverage = CGColorSpace::alphaOnly();
    EXPECT_EQ(drawInto(coverage, Alpha::Only, one(51, coverage), {255, 0, 0, 130}), (Grid{{255, 102, 51, 130}}));
}

TEST(Context, CMYKBitmapsKeepInksAndMixByAlpha)
{
    CGContext context = bitmap(4, 1, Alpha::None, kCGBitmapByteOrderDefault, CGColorSpace::deviceCMYK());
    EXPECT_EQ(pixelAt(context.makeImage(), 0, 0), Rgba{}); // no ink
    CGImageLayout layout = CGImageLayout::rgba(1, 1, Alpha::None);
    layout.colorSpace = CGColorSpace::deviceCMYK();
    const std::vector<std::uint8_t> inks{200, 150, 100, 220}; // no RGB colour comes back to these
    context.drawImage(pictureFromBytes(layout, inks), CGRect{0, 0, 1, 1});
    fill(context, {1, 0.5, 0, 1}, {1, 0, 1, 1});
    context.drawImage(solidPicture(1, 1, {0, 0, 0, 51}), CGRect{2, 0, 1, 1});
    context.setAlpha(0.5);
    context.drawImage(solidPicture(1, 1, {102, 204, 51, 0}, Alpha::NoneSkipLast), CGRect{3, 0, 1, 1});
    // The last: K = 0.2, C = 1 - 102/204, Y = 1 - 51/204; all halved
    EXPECT_EQ(pixelsOf(context.makeImage()),
              (std::vector<Rgba>{{200, 150, 100, 220}, {0, 128, 255, 0}, {0, 0, 0, 51}, {64, 0, 96, 26}}));
}

TEST(Context, ClipsIntersectAndComeBack)
{
    CGContext context = canvas(7, 6);
    context.saveGState();
    context.clipToRect({2, 2, 6, 3});
    context.clipToRect({0, 0, 5.5, 10});
    EXPECT_EQ(context.clipBounds(), (IntRect{2, 2, 4, 3}));
    context.clipToPath(UIBezierPath::withRect({0, 3.5, 10, 10}));
    fill(context, kRedColor, whole(7, 6));
    context.restoreGState();
    EXPECT_EQ(context.clipBounds(), (IntRect{0, 0, 7, 6}));
    context.restoreGState(); // nothing was saved
    const CGImage image = context.makeImage();
    const std::vector<int> none(7, 0);
    EXPECT_EQ(componentGrid(image, kAlpha),
              (Grid{none, none, none, {0, 0, 128, 128, 128, 64, 0}, {0, 0, 255, 255, 255, 128, 0}, none}));
    context.clipToRect({20, 20, 5, 5});
    EXPECT_TRUE(context.clipBounds().isEmpty());
    context.fillRect(whole(30, 30));
    EXPECT_TRUE(imagesMatch(context.makeImage(), image));
}

TEST(Context, MasksClipByWhatTheyHold)
{
    const auto value = [](int, int y) { return y == 0 ? 255 : 40; };
    const CGImage masks[] = {bytePicture(1, 2, value), bytePicture(1, 2, value, CGColorSpace::alphaOnly()),
                             makePicture(
                                 1, 2,
                                 [&](int x, int y) {
                                     return Rgba{9, 9, 9, static_cast<std::uint8_t>(value(x, y))};
                                 },
                                 true)};
    for (const CGImage& mask : masks) {
        for (const bool upwards : {false, true}) {
            CGContext context = upwards ? bitmap(1, 2, Alpha::PremultipliedLast) : canvas(1, 2);
            context.clipToMask(whole(1, 2), mask);
            fill(context, kRedColor, whole(1, 2));
            EXPECT_EQ(componentGrid(context.makeImage(), kAlpha), (Grid{{255}, {40}}));
        }
    }
}

TEST(Context, LayersCompositeAsOneMayBeNestedBoundedAndEmpty)
{
    // Two overlapping squares at half alpha: inside a layer the overlap is no darker.
    CGContext context = canvas(6, 2);
    fill(context, UIColor::white(), {0, 0, 6, 1});
    context.saveGState();
    context.setAlpha(0.5);
    context.clipToRect({0, 0, 4.5, 1});
    context.beginTransparencyLayer();
    fill(context, UIColor::black(), {0, 0, 3, 1});
    context.saveGState(); // left open: the end of the layer takes it along
    context.setAlpha(0.2);
    context.setAlpha(1);
    fill(context, kRedColor, {2, 0, 4, 1});
    context.endTransparencyLayer();
    context.endTransparencyLayer(); // one too many does nothing
    context.restoreGState();
    context.beginTransparencyLayer(CGRect{1, 1, 3, 1});
    EXPECT_EQ(context.clipBounds(), (IntRect{1, 1, 3, 1}));
    context.setAlpha(0.5);
    context.beginTransparencyLayer();
    fill(context, kRedColor, {0, 1, 6, 1});
    context.endTransparencyLayer();
    context.endTransparencyLayer();
    context.beginTransparencyLayer(CGRect{20, 20, 3, 3});
    context.fillRect(whole(100, 100));
    context.endTransparencyLayer();
    const CGImage image = context.makeImage();
    EXPECT_EQ(componentGrid(image, kRed), (Grid{{128, 128, 255, 255, 255, 255}, {0, 128, 128, 128, 0, 0}}));
    EXPECT_EQ(componentGrid(image, kGreen), (Grid{{128, 128, 128, 128, 191, 255}, {0, 0, 0, 0, 0, 0}}));
    EXPECT_EQ(componentGrid(image, kAlpha), (Grid{{255, 255, 255, 255, 255, 255}, {0, 128, 128, 128, 0, 0}}));
}

TEST(Context, ShadowsAreGaussianAndFallWhereTheyAreTold)
{
    // A half plane throws the integral of the Gaussian; so wide a one goes through a smaller picture.
    const double deviation = 40;
    const CGImage soft = drawn(400, 9, [&](CGContext& wide) {
        wide.setShadow({10, 0}, 2 * deviation, UIColor{0, 0, 1, 0.8});
        fill(wide, kRedColor, {-1000, -1000, 1190, 2000});
    });
    for (int x = 191; x < 400; ++x) {
        const double share = 0.5 * std::erfc((x + 0.5 - 200) / (deviation * std::numbers::sqrt2));
        EXPECT_NEAR(pixelAt(soft, x, 4)[kAlpha], 0.8 * 255 * share, 2) << x;
        EXPECT_EQ(pixelAt(soft, x, 4)[kRed], 0);
    }
    // A hard shadow of something that the clip itself hides.
    const CGImage shadow = drawn(10, 4, [](CGContext& clipped) {
        clipped.clipToRect({5, 0, 5, 4});
        clipped.setShadow({5, 1}, 0, UIColor::black());
        fill(clipped, kRedColor, {1, 1, 2, 2});
    });
    const std::vector<int> none(10, 0);
    const std::vector<int> two{0, 0, 0, 0, 0, 0, 255, 255, 0, 0};
    EXPECT_EQ(componentGrid(shadow, kAlpha), (Grid{none, none, two, two}));
    EXPECT_EQ(componentGrid(shadow, kRed), (Grid{none, none, none, none}));
}

// What leaves its reach untouched is what parts of a picture may be drawn without.
TEST(Context, ShadowsEndWithinTheirReach)
{
    for (const double deviation : {0.4, 3.0, 15.9, 16.1, 40.0}) {
        const int reach = CGContext::shadowReach(deviation);
        const int side = 2 * reach + 41;
        const CGImage image = drawn(side, 3, [&](CGContext& context) {
            context.setShadow({0, 0}, 2 * deviation, UIColor::black());
            fill(context, kRedColor, {reach + 20.0, -900, 1, 1800});
        });
        EXPECT_EQ(pixelAt(image, 19, 1)[kAlpha], 0) << deviation;
        EXPECT_EQ(pixelAt(image, side - 20, 1)[kAlpha], 0) << deviation;
    }
    EXPECT_EQ(CGContext::shadowReach(std::nan("")), 0);
    EXPECT_EQ(CGContext::shadowReach(1e9), CGContext::shadowReach(256));
}

TEST(Context, HostileGeometryIsHarmless)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    CGContext context = canvas(20, 20);
    const CGImage clear = context.makeImage();
    context.setFillColor(kRedColor);
    for (const CGRect& rect :
         {CGRect{nan, 0, 5, 5}, CGRect{0, 0, nan, 5}, CGRect{0, 0, -3, 5}, CGRect{1e12, 0, 5, 5}}) {
        context.fillRect(rect);
        context.fillPath(UIBezierPath::withRect(rect));
        context.drawImage(noisePicture(2, 2, Alpha::Last), rect);
    }
    context.setShadow({std::numeric_limits<double>::infinity(), nan}, -1, kRedColor);
    context.setAlpha(nan);
    context.fillRect({0, 0, 5, 5});
    EXPECT_TRUE(imagesMatch(context.makeImage(), clear));
    context.setAlpha(7);
    context.setShadow({1e9, -1e9}, 1e9, UIColor::black());
    context.fillRect({-1e15, -1e15, 2e15, 2e15});
    EXPECT_EQ(pixelAt(context.makeImage(), 10, 10), (Rgba{255, 0, 0, 255}));
    context.concatCTM({nan, 0, 0, 1, 0, 0});
    context.clipToRect({0, 0, 5, 5});
    EXPECT_TRUE(context.clipBounds().isEmpty());
}

/// Something of everything: pictures in all ways, clips, masks, layers, shadows, paths.
CGImage scene()
{
    return drawn(120, 90, [](CGContext& context) {
        const CGImage chart = chartPicture(19, 20);
        const CGImage noise = noisePicture(101, 83, Alpha::Last, 3);
        const CGImage mask = bytePicture(20, 15, [](int x, int y) { return x * 12 ^ y; });
        fill(context, {0.9, 0.95, 1, 1}, {0, 0, 120, 60});
        context.drawImage(chart, CGRect{3.3, 5.7, 50.1, 30.9});
        context.drawImage(noise, CGRect{60, 2, 27, 21});
        context.saveGState();
        context.setAlpha(0.7);
        context.rotateCTM(0.3);
        context.clipToMask({10, 5, 100, 70}, mask);
        context.drawImage(noise, CGRect{25, 20, 80, 60});
        context.restoreGState();
        context.setFillColor({0.3, 0.5, 0.7, 0.6});
        context.setShadow({4, 3}, 6, UIColor::black());
        context.fillPath(UIBezierPath::withOvalIn({70, 30, 41, 33}));
        context.setShadow({-2, 5}, 40, kRedColor);
        context.beginTransparencyLayer();
        UIBezierPath frame = UIBezierPath::withRoundedRect({20, 50, 40, 25}, 8);
        frame.appendPath(UIBezierPath::withRect({30, 55, 10, 10}));
        frame.usesEvenOddFillRule = true;
        frame.lineWidth = 2.5;
        context.fillPath(frame);
        context.setStrokeColor({0, 0.4, 0, 1});
        context.strokePath(frame);
        context.endTransparencyLayer();
        context.setShadow({}, 0, std::nullopt);
        context.clearRect({90.5, 70, 20, 10});
    });
}

/// The same in one component, beyond a picture's edges too, and grey from translucent colours.
CGImage grayScene()
{
    CGContext context = bitmap(103, 51, Alpha::None, kCGBitmapByteOrderDefault, CGColorSpace::deviceGray());
    context.concatCTM({3.1, 1.7, -1.3, 2.9, 30, -20});
    context.drawImage(bytePicture(50, 40, [](int x, int y) { return x * y; }), CGRect{0, 0, 50, 40});
    context.drawImage(noisePicture(31, 23, Alpha::Last), CGRect{20, 10, 30, 20});
    return context.makeImage();
}

TEST(Context, AWholeSceneLooksAsItDidOnEveryProcessor)
{
    EXPECT_TRUE(matchesGolden(scene(), "drawing-scene", 1));
    EXPECT_TRUE(matchesGolden(grayScene(), "drawing-gray-scene", 1));
    const auto everything = [] {
        std::vector<CGImage> pictures{scene(), grayScene()};
        for (const IntSize size : {IntSize{90, 61}, IntSize{233, 171}, IntSize{457, 333}})
            pictures.push_back(resampled(noisePicture(301, 203, Alpha::Last), size));
        pictures.push_back(resampled(bytePicture(50, 40, [](int x, int y) { return x * 5 ^ y; }), {131, 33}));
        return pictures;
    };
    const std::vector<CGImage> wanted = everything();
    onEveryProcessor([&](const std::string& processor) {
        const std::vector<CGImage> got = everything();
        for (std::size_t i = 0; i < wanted.size(); ++i)
            EXPECT_TRUE(imagesMatch(got[i], wanted[i])) << processor << ", picture " << i;
    });
}

} // namespace
} // namespace lamina::test
