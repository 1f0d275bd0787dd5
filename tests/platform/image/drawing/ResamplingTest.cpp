#include "platform/image/drawing/Resampling.h"

#include "DrawingSupport.h"
#include "EveryProcessor.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <vector>

namespace lamina {
namespace {

using test::bytesOf;
using test::noisePicture;
using test::Pixel;
using test::pixelOf;

/// Weight of source sample j for output i, written from the definitions, in double precision and without tables.
double kernelWeight(double distance, double scale)
{
    const double d = std::abs(distance);
    if (scale >= 1)
        return d < 1 ? 1.5 * d * d * d - 2.5 * d * d + 1 : d < 2 ? -0.5 * d * d * d + 2.5 * d * d - 4 * d + 2 : 0;
    const double x = d * scale;
    if (x >= 3)
        return 0;
    const auto sinc = [](double v) { return v == 0 ? 1 : std::sin(std::numbers::pi * v) / (std::numbers::pi * v); };
    return sinc(x) * sinc(x / 3);
}

std::vector<double> referenceAxis(const std::vector<double>& line, int target)
{
    const int length = static_cast<int>(line.size());
    const double scale = static_cast<double>(target) / length;
    std::vector<double> out;
    for (int i = 0; i < target; ++i) {
        double sum = 0;
        double weights = 0;
        const double low = i / scale;
        const double high = (i + 1) / scale;
        const int reach = static_cast<int>(4 / std::min(1.0, scale)) + 1;
        for (int j = static_cast<int>(low) - reach; j <= static_cast<int>(high) + reach; ++j) {
            double w = 0;
            if (target == length)
                w = i == j ? 1 : 0;
            else if (scale <= 0.5)
                w = std::max(0.0, std::min(high, j + 1.0) - std::max(low, static_cast<double>(j)));
            else
                w = kernelWeight(j + 0.5 - (low + high) / 2, scale);
            sum += w * line[static_cast<std::size_t>(std::clamp(j, 0, length - 1))];
            weights += w;
        }
        out.push_back(sum / weights);
    }
    return out;
}

/// One channel of a picture as premultiplied values, resized.
std::vector<std::vector<double>> reference(const CGImage& image, std::size_t channel, IntSize size)
{
    std::vector<std::vector<double>> rows;
    for (int y = 0; y < image.height(); ++y) {
        std::vector<double> line;
        for (int x = 0; x < image.width(); ++x) {
            const Pixel p = pixelOf(image, x, y);
            const bool opaque = image.alphaInfo() == CGImageAlphaInfo::NoneSkipLast;
            const bool straight = image.alphaInfo() == CGImageAlphaInfo::Last && channel < 3;
            line.push_back(opaque && channel == 3 ? 255 : p[channel] * (straight ? p[3] / 255.0 : 1.0));
        }
        rows.push_back(referenceAxis(line, size.width));
    }
    std::vector<std::vector<double>> out(static_cast<std::size_t>(size.height));
    for (std::size_t x = 0; x < static_cast<std::size_t>(size.width); ++x) {
        std::vector<double> column;
        for (const std::vector<double>& row : rows)
            column.push_back(row[x]);
        const std::vector<double> resized = referenceAxis(column, size.height);
        for (std::size_t y = 0; y < resized.size(); ++y)
            out[y].push_back(std::clamp(resized[y], 0.0, 255.0));
    }
    return out;
}

struct SizeCase {
    const char* name;
    IntSize from;
    IntSize to;
};

class ResamplingSizes : public testing::TestWithParam<SizeCase> {};

TEST_P(ResamplingSizes, AgreeWithTheDefinitionForEveryKindOfAlpha)
{
    const auto [name, from, to] = GetParam();
    for (const CGImageAlphaInfo alpha :
         {CGImageAlphaInfo::NoneSkipLast, CGImageAlphaInfo::PremultipliedLast, CGImageAlphaInfo::Last}) {
        SCOPED_TRACE(static_cast<int>(alpha));
        const CGImage source = noisePicture(from.width, from.height, alpha);
        const CGImage result = resampled(source, to);
        ASSERT_EQ(result.size(), to);
        const auto alphas = reference(source, 3, to);
        double worst = 0;
        for (std::size_t c = 0; c < 4; ++c) {
            const auto wanted = reference(source, c, to);
            for (int y = 0; y < to.height; ++y) {
                for (int x = 0; x < to.width; ++x) {
                    const auto i = static_cast<std::size_t>(x);
                    const auto j = static_cast<std::size_t>(y);
                    const double limit =
                        std::min(wanted[j][i], alphas[j][i]); // a premultiplied colour stays below its alpha
                    worst = std::max(worst, std::abs(pixelOf(result, x, y)[c] - limit));
                }
            }
        }
        EXPECT_LE(worst, 1.5);
        if (alpha != CGImageAlphaInfo::Last) {
            EXPECT_LE(worst, 0.51); // only the last rounding
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Sizes, ResamplingSizes,
    testing::Values(SizeCase{"AreaBothWays", {64, 51}, {17, 11}}, SizeCase{"AreaOfWholeSteps", {64, 64}, {16, 32}},
                    SizeCase{"Lanczos", {41, 37}, {29, 31}}, SizeCase{"Cubic", {17, 13}, {53, 39}},
                    SizeCase{"CubicByAThird", {12, 9}, {36, 27}}, SizeCase{"DownAcrossUpDown", {67, 5}, {13, 23}},
                    SizeCase{"UpAcrossDownDown", {5, 90}, {31, 7}}, SizeCase{"OneAxisOnly", {33, 20}, {33, 9}},
                    SizeCase{"OnePixel", {1, 1}, {5, 3}}, SizeCase{"ToOnePixel", {40, 30}, {1, 1}},
                    SizeCase{"LongRows", {300, 3}, {70, 3}}),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST(Resampling, SameSizeIsAnExactCopy)
{
    const CGImage source = noisePicture(23, 7, CGImageAlphaInfo::PremultipliedLast);
    EXPECT_EQ(bytesOf(resampled(source, {23, 7})), bytesOf(source));
}

TEST(Resampling, FlatColourStaysFlatToTheBit)
{
    for (const Pixel colour :
         {Pixel{255, 255, 255, 255}, Pixel{1, 127, 200, 201}, Pixel{0, 0, 0, 3}, Pixel{77, 78, 79, 80}}) {
        const CGImage source =
            test::fourBytePicture(37, 29, CGImageAlphaInfo::PremultipliedLast, [&](int, int) { return colour; });
        for (const IntSize size :
             {IntSize{5, 3}, IntSize{30, 25}, IntSize{111, 200}, IntSize{37, 61}, IntSize{1, 999}}) {
            const CGImage result = resampled(source, size);
            int different = 0;
            for (int y = 0; y < size.height; ++y) {
                for (int x = 0; x < size.width; ++x)
                    different += pixelOf(result, x, y) != colour;
            }
            EXPECT_EQ(different, 0) << size.width << "x" << size.height;
        }
    }
}

TEST(Resampling, ComponentsOfGreyAlphaAndCMYKAreKept)
{
    for (const CGColorSpace& space : {CGColorSpace::deviceGray(), CGColorSpace::alphaOnly()}) {
        const CGImage grey = test::bytePicture(
            4, 2, [](int x, int y) { return 10 + 20 * x + 100 * y; }, space);
        const CGImage half = resampled(grey, {2, 1});
        EXPECT_EQ(half.colorSpace(), space);
        EXPECT_EQ(test::byteOf(half, 0, 0), 70);  // (10 + 30 + 110 + 130) / 4
        EXPECT_EQ(test::byteOf(half, 1, 0), 110); // (50 + 70 + 150 + 170) / 4
    }
    CGImageLayout layout = CGImageLayout::rgba(2, 1, CGImageAlphaInfo::None);
    layout.colorSpace = CGColorSpace::deviceCMYK();
    PixelBuffer inks = PixelBuffer::allocate(8);
    const std::uint8_t values[8] = {0, 255, 40, 100, 10, 255, 60, 0};
    std::copy(values, values + 8, inks.data());
    const CGImage mixed = resampled(CGImage::make(layout, std::move(inks)), {1, 1});
    EXPECT_EQ(pixelOf(mixed, 0, 0), (Pixel{5, 255, 50, 50}));
}

TEST(Resampling, RefusesWhatIsNoSize)
{
    const CGImage source = noisePicture(4, 4, CGImageAlphaInfo::Last);
    EXPECT_FALSE(resampled(source, {0, 3}));
    EXPECT_FALSE(resampled(source, {3, -1}));
    EXPECT_FALSE(resampled(CGImage(), {3, 3}));
}

/// Everything whose bytes must not depend on the machine: the resampler each way, turned pictures, blending, masks.
std::vector<std::uint8_t> everyKernel()
{
    std::vector<std::uint8_t> all;
    const auto add = [&](const CGImage& image) {
        const std::vector<std::uint8_t> bytes = bytesOf(image);
        all.insert(all.end(), bytes.begin(), bytes.end());
    };
    const CGImage straight = noisePicture(301, 203, CGImageAlphaInfo::Last, 3);
    for (const IntSize size : {IntSize{90, 61}, IntSize{233, 171}, IntSize{457, 333}})
        add(resampled(straight, size));
    const CGImage mask = test::bytePicture(50, 40, [](int x, int y) { return x * 5 ^ y; });
    add(resampled(mask, {131, 33}));
    CGContext context = test::canvas(311, 257, true);
    context.setAlpha(0.37);
    context.drawImage(straight, CGRect{3.3, 5.7, 290.1, 240.9});
    context.rotateCTM(0.3);
    context.clipToMask({10, 5, 250, 200}, mask);
    context.drawImage(straight, CGRect{20, -20, 200, 190});
    context.setFillColor({0.3, 0.5, 0.7, 0.4});
    context.setShadow({4, 3}, 6, UIColor::black());
    context.fillPath(UIBezierPath::withOvalIn({30, 20, 211, 133}));
    add(context.makeImage());
    // One component, beyond its edges too, and grey from translucent colours.
    std::optional<CGContext> gray =
        CGContext::bitmap(203, 101, 0, CGColorSpace::deviceGray(), bitmapInfo(CGImageAlphaInfo::None));
    gray->concatCTM({3.1, 1.7, -1.3, 2.9, 30, -20});
    gray->drawImage(test::bytePicture(50, 40, [](int x, int y) { return x * y; }), CGRect{0, 0, 50, 40});
    gray->drawImage(straight, CGRect{20, 10, 30, 20});
    add(gray->makeImage());
    return all;
}

TEST(Resampling, GivesTheSameBytesOnEveryProcessorAndNumberOfThreads)
{
    const std::vector<std::uint8_t> wanted = everyKernel();
    test::onEveryProcessor([&](const std::string& processor) { EXPECT_EQ(everyKernel(), wanted) << processor; });
}

} // namespace
} // namespace lamina
