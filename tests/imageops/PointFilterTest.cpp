#include "FilterSupport.h"
#include "imageops/ImageFilters.h"

#include <limits>

namespace {

using namespace lamina;
using test::Bytes;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

struct ValueCase {
    const char* name;
    std::function<UIImage(const UIImage&)> filter;
    std::array<std::uint8_t, 3> in;
    std::array<std::uint8_t, 3> out;
};

auto brighten(float v)
{
    return [=](const UIImage& image) { return brightenWithValue(image, v); };
}

auto contrast(float v)
{
    return [=](const UIImage& image) { return contrastAdjustmentWithValue(image, v); };
}

auto gamma(float v)
{
    return [=](const UIImage& image) { return gammaCorrectionWithValue(image, v); };
}

TEST(PointFilters, CutFractionsAndClip)
{
    const ValueCase cases[] = {
        {"brighten cuts", brighten(10.7F), {0, 100, 250}, {10, 110, 255}},
        {"darken cuts", brighten(-0.5F), {0, 10, 255}, {0, 9, 254}},
        {"all white", brighten(300), {0, 1, 255}, {255, 255, 255}},
        {"all black", brighten(-3e38F), {0, 1, 255}, {0, 0, 0}},
        {"contrast 0", contrast(0), {0, 77, 255}, {0, 77, 255}},
        {"contrast 200", contrast(200), {100, 120, 130}, {0, 65, 143}},    // f = 7.8328
        {"contrast -200", contrast(-200), {0, 128, 255}, {112, 128, 143}}, // f = 0.12171
        {"contrast -255", contrast(-255), {0, 128, 255}, {128, 128, 128}}, // f = 0
        {"contrast to the limit", contrast(259), {127, 128, 129}, {0, 128, 255}},
        {"contrast beyond it", contrast(260), {127, 128, 129}, {255, 128, 0}}, // f = -523.1
        {"gamma 2", gamma(2), {0, 128, 255}, {0, 64, 255}},                    // 64.25
        {"gamma 1/2", gamma(0.5F), {1, 64, 200}, {15, 127, 225}},              // 15.97, 127.75, 225.8
        {"gamma 0", gamma(0), {0, 1, 255}, {255, 255, 255}},
        {"gamma -1", gamma(-1), {0, 1, 255}, {255, 255, 255}},
        {"invert", invert, {0, 100, 255}, {255, 155, 0}},
        {"sepia", sepia, {100, 50, 25}, {82, 73, 57}}, // 82.475, 73.4, 57.175
        {"sepia of white", sepia, {255, 255, 255}, {255, 255, 238}},
    };
    for (const ValueCase& c : cases) {
        const UIImage source = test::picture(9, 2, bitmapInfo(CGImageAlphaInfo::NoneSkipLast), [&](int, int) {
            return Bytes{c.in[0], c.in[1], c.in[2], 3};
        });
        const Bytes wanted{255, c.out[0], c.out[1], c.out[2]};
        test::expectBytes(c.filter(source), std::vector<Bytes>(18, wanted), c.name);
    }
}

struct Formula {
    const char* name;
    std::function<UIImage(const UIImage&)> filter;
    std::function<float(float)> plain;
};

TEST(PointFilters, FollowTheirFormulasOnEveryProcessorAndLeaveAlpha)
{
    const float f = ((77.7F + 255.0F) * 259.0F) / ((259.0F - 77.7F) * 255.0F);
    const Formula formulas[] = {
        {"brighten", brighten(33.3F), [](float x) { return x + 33.3F; }},
        {"contrast", contrast(77.7F), [=](float x) { return (x - 128) * f + 128; }},
        {"invert", invert, [](float x) { return x * -1 + 255; }},
        {"gamma", gamma(2.3F),
         [](float x) { return static_cast<float>(std::pow(double{x / 255}, double{2.3F})) * 255; }},
    };
    const std::vector<UIImage> pictures = test::noisePictures();
    test::onEveryProcessor([&](const std::string& processor) {
        for (const UIImage& image : pictures) {
            for (const Formula& formula : formulas) {
                std::vector<Bytes> wanted = test::drawnPlainly(image);
                for (Bytes& p : wanted) {
                    for (std::size_t c = 1; c < 4; ++c)
                        p[c] = static_cast<std::uint8_t>(std::clamp(formula.plain(p[c]), 0.0F, 255.0F));
                }
                test::expectBytes(formula.filter(image), wanted, processor + ": " + formula.name);
            }
        }
    });
}

TEST(PointFilters, SepiaIsTheSameOnEveryProcessor)
{
    const std::vector<UIImage> pictures = test::noisePictures();
    test::onEveryProcessor([&](const std::string& processor) {
        for (const UIImage& image : pictures) {
            std::vector<Bytes> wanted = test::drawnPlainly(image);
            for (Bytes& p : wanted) {
                const float r = p[1];
                const float g = p[2];
                const float b = p[3];
                const auto cut = [](float v) { return static_cast<std::uint8_t>(std::min(v, 255.0F)); };
                p = {p[0], cut(0.393F * r + 0.769F * g + 0.189F * b), cut(0.349F * r + 0.686F * g + 0.168F * b),
                     cut(0.272F * r + 0.534F * g + 0.131F * b)};
            }
            test::expectBytes(sepia(image), wanted, processor);
        }
    });
}

TEST(PointFilters, InvertedTwiceIsTheSame)
{
    for (const UIImage& image : test::noisePictures())
        test::expectBytes(invert(invert(image)), test::drawnPlainly(image), "invert");
}

TEST(PointFilters, OpacityScalesAllChannelsAndAlwaysHasAlpha)
{
    for (const float alpha : {-1.0F, 0.0F, 0.4F, 1.0F, 7.0F}) {
        for (const UIImage& image : test::noisePictures()) {
            const UIImage result = opacity(image, alpha);
            EXPECT_EQ(result.cgImage().alphaInfo(), CGImageAlphaInfo::PremultipliedFirst);
            std::vector<Bytes> wanted = test::drawnPlainly(image);
            for (Bytes& p : wanted) {
                for (std::uint8_t& c : p)
                    c = static_cast<std::uint8_t>(std::lround(c * std::clamp(double{alpha}, 0.0, 1.0)));
            }
            test::expectBytes(result, wanted, std::to_string(alpha));
        }
    }
}

const test::Named kKeeping[] = {
    {"brighten", brighten(1)},
    {"contrast", contrast(1)},
    {"sepia", sepia},
};

const test::Named kPlain[] = {
    {"gamma", gamma(2)},
    {"invert", invert},
    {"opacity", [](const UIImage& image) { return opacity(image, 0.5F); }},
    {"edges", [](const UIImage& image) { return edgeDetectionWithBias(image, 0); }},
    {"emboss", [](const UIImage& image) { return embossWithBias(image, 0); }},
    {"sharpen", [](const UIImage& image) { return sharpenWithBias(image, 0); }},
    {"unsharpen", [](const UIImage& image) { return unsharpenWithBias(image, 0); }},
    {"blur", [](const UIImage& image) { return gaussianBlurWithBias(image, 0); }},
};

/// 200 × 151 stored pixels at scale 2, turned to the left: 75.5 × 100 points.
UIImage turnedPicture()
{
    const UIImage stored = test::noise(200, 151, bitmapInfo(CGImageAlphaInfo::NoneSkipLast));
    return UIImage(stored.cgImage(), 2, UIImageOrientation::Left);
}

TEST(Filters, WorkOnPointsAndCarryScaleAndOrientationWhereTheySaySo)
{
    const UIImage source = turnedPicture();
    for (const test::Named& f : kKeeping) {
        const UIImage result = f.filter(source);
        EXPECT_EQ(result.cgImage().size(), (IntSize{75, 100})) << f.name;
        EXPECT_EQ(result.scale(), 2) << f.name;
        EXPECT_EQ(result.imageOrientation(), UIImageOrientation::Left) << f.name;
    }
    for (const test::Named& f : kPlain) {
        const UIImage result = f.filter(source);
        EXPECT_EQ(result.cgImage().size(), (IntSize{75, 100})) << f.name;
        EXPECT_EQ(result.scale(), 1) << f.name;
        EXPECT_EQ(result.imageOrientation(), UIImageOrientation::Up) << f.name;
    }
    EXPECT_TRUE(autoEnhance(source).isIdenticalTo(source));
    EXPECT_TRUE(redEyeCorrection(source).isIdenticalTo(source));
}

TEST(Filters, GiveNoPictureForNoneAndForArgumentsThatAreNoNumbers)
{
    const UIImage source = test::noise(5, 5, bitmapInfo(CGImageAlphaInfo::Last));
    const UIImage tooSmall(source.cgImage(), 6);
    for (const UIImage& image : {UIImage(), tooSmall}) {
        for (const test::Named& f : kKeeping)
            EXPECT_FALSE(f.filter(image)) << f.name;
        for (const test::Named& f : kPlain)
            EXPECT_FALSE(f.filter(image)) << f.name;
    }
    EXPECT_FALSE(grayscale(UIImage()));
    for (const float bad : {kNaN, kInfinity, -kInfinity}) {
        EXPECT_FALSE(brightenWithValue(source, bad));
        EXPECT_FALSE(contrastAdjustmentWithValue(source, bad));
        EXPECT_FALSE(gammaCorrectionWithValue(source, bad));
        EXPECT_FALSE(opacity(source, bad));
    }
}

} // namespace
