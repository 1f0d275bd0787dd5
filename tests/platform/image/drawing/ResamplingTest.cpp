#include "platform/image/drawing/Resampling.h"

#include "TestPictures.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <vector>

namespace lamina::test {
namespace {

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
            const Rgba p = pixelAt(image, x, y);
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

void expectDefinition(IntSize from, IntSize to)
{
    SCOPED_TRACE(testing::PrintToString(from.width) + " to " + testing::PrintToString(to.width));
    for (const CGImageAlphaInfo alpha :
         {CGImageAlphaInfo::NoneSkipLast, CGImageAlphaInfo::PremultipliedLast, CGImageAlphaInfo::Last}) {
        SCOPED_TRACE(static_cast<int>(alpha));
        const CGImage source = noisePicture(paddedLayout(from.width, from.height, alpha));
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
                    // A premultiplied colour stays below its alpha.
                    const double limit = std::min(wanted[j][i], alphas[j][i]);
                    worst = std::max(worst, std::abs(pixelAt(result, x, y)[c] - limit));
                }
            }
        }
        EXPECT_LE(worst, alpha == CGImageAlphaInfo::Last ? 1.5 : 0.51); // but for straight alpha only the last rounding
    }
}

TEST(Resampling, AgreesWithTheDefinitionForEveryKindOfAlpha)
{
    expectDefinition({64, 51}, {17, 11}); // means both ways
    expectDefinition({64, 64}, {16, 32}); // of whole steps
    expectDefinition({41, 37}, {29, 31}); // Lanczos
    expectDefinition({17, 13}, {53, 39}); // cubic
    expectDefinition({12, 9}, {36, 27});  // by a third
    expectDefinition({67, 5}, {13, 23});  // down across, up down
    expectDefinition({5, 90}, {31, 7});
    expectDefinition({33, 20}, {33, 9}); // one axis only
    expectDefinition({1, 1}, {5, 3});
    expectDefinition({40, 30}, {1, 1});
    expectDefinition({300, 3}, {70, 3}); // long rows
    expectDefinition({23, 7}, {23, 7});  // a copy
}

TEST(Resampling, ComponentsOfGreyAlphaAndCMYKAreKept)
{
    for (const CGColorSpace& space : {CGColorSpace::deviceGray(), CGColorSpace::alphaOnly()}) {
        const CGImage half = resampled(bytePicture(
                                           4, 2, [](int x, int y) { return 10 + 20 * x + 100 * y; }, space),
                                       {2, 1});
        EXPECT_EQ(half.colorSpace(), space);
        EXPECT_EQ(bytesOf(half), (std::vector<std::uint8_t>{70, 110})); // (10 + 30 + 110 + 130) / 4 and 40 more
    }
    CGImageLayout layout = CGImageLayout::rgba(2, 1, CGImageAlphaInfo::None);
    layout.colorSpace = CGColorSpace::deviceCMYK();
    const std::vector<std::uint8_t> inks{0, 255, 40, 100, 10, 255, 60, 0};
    EXPECT_EQ(pixelAt(resampled(pictureFromBytes(layout, inks), {1, 1}), 0, 0), (Rgba{5, 255, 50, 50}));
}

TEST(Resampling, RefusesWhatIsNoSize)
{
    const CGImage source = noisePicture(4, 4, CGImageAlphaInfo::Last);
    EXPECT_FALSE(resampled(source, {0, 3}));
    EXPECT_FALSE(resampled(source, {3, -1}));
    EXPECT_FALSE(resampled(CGImage(), {3, 3}));
}

} // namespace
} // namespace lamina::test
