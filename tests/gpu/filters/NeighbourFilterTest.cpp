#include "FilterReference.h"
#include "GraphFixture.h"
#include "gpu/filters/GPUImage3x3ConvolutionFilter.h"
#include "gpu/filters/GPUImageDilationFilter.h"
#include "gpu/filters/GPUImageEmbossFilter.h"
#include "gpu/filters/GPUImageErosionFilter.h"
#include "gpu/filters/GPUImageToonFilter.h"
#include "gpu/filters/GpuImageCustomFilter3.h"

#include <algorithm>
#include <cmath>

namespace lamina::test {
namespace {

class NeighbourFilterTest : public GraphFixture {};

using Kernel = std::array<std::array<double, 3>, 3>; // rows from the top, each from the left

GPUMatrix3x3 matrix(const Kernel& kernel)
{
    const auto row = [](const std::array<double, 3>& weights) {
        return GPUVector3{static_cast<float>(weights[0]), static_cast<float>(weights[1]),
                          static_cast<float>(weights[2])};
    };
    return {row(kernel[0]), row(kernel[1]), row(kernel[2])};
}

/// The neighbours lie `dx`, `dy` pixels away.
Formula convolved(const Kernel& kernel, int dx = 1, int dy = 1)
{
    return [=](const Texture& in, double u, double v) {
        const int x = static_cast<int>(u * in.width());
        const int y = static_cast<int>(v * in.height());
        Color sum{0, 0, 0, in.texel(x, y)[3]};
        for (int row = 0; row < 3; ++row) {
            for (int column = 0; column < 3; ++column) {
                const Color neighbour = in.texel(x + (column - 1) * dx, y + (row - 1) * dy);
                for (std::size_t k = 0; k < 3; ++k)
                    sum[k] += kernel[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)] * neighbour[k];
            }
        }
        return sum;
    };
}

/// Nine different weights, some below 0, that keep most of the result in range.
constexpr Kernel kLopsided{{{0.3, -0.1, 0.05}, {0.2, 0.25, -0.3}, {-0.15, 0.35, 0.4}}};
constexpr Kernel kFromTheLeft{{{0, 0, 0}, {1, 0, 0}, {0, 0, 0}}};

Kernel embossKernel(double i)
{
    return {{{-2 * i, -i, 0}, {-i, 1, i}, {0, i, 2 * i}}};
}

Formula posterized(double threshold, double levels)
{
    return [=](const Texture& in, double u, double v) {
        const int x = static_cast<int>(u * in.width());
        const int y = static_cast<int>(v * in.height());
        const auto red = [&](int dx, int dy) { return in.texel(x + dx, y + dy)[0]; };
        const double h = red(-1, 1) + 2 * red(0, 1) + red(1, 1) - red(-1, -1) - 2 * red(0, -1) - red(1, -1);
        const double v2 = red(1, -1) + 2 * red(1, 0) + red(1, 1) - red(-1, -1) - 2 * red(-1, 0) - red(-1, 1);
        Color color = in.texel(x, y);
        for (std::size_t k = 0; k < 3; ++k)
            color[k] = std::hypot(h, v2) < threshold ? std::floor(color[k] * levels + 0.5) / levels : 0.0;
        return color;
    };
}

/// The smallest or largest red around, as an opaque grey.
Formula extremeRed(bool largest, int across, int down, int spacing = 1)
{
    return [=](const Texture& in, double u, double v) {
        const int x = static_cast<int>(u * in.width());
        const int y = static_cast<int>(v * in.height());
        double value = in.texel(x, y)[0];
        for (int j = -down; j <= down; ++j) {
            for (int i = -across; i <= across; ++i) {
                const double red = in.texel(x + i, y + j * spacing)[0];
                value = largest ? std::max(value, red) : std::min(value, red);
            }
        }
        return Color{value, value, value, 1};
    };
}

TEST_F(NeighbourFilterTest, ConvolutionsAndReliefsMatchTheirKernels)
{
    for (const CGImage& picture : usualPictures()) {
        GPUImage3x3ConvolutionFilter convolution;
        expectFilter(
            convolution, picture, [](const Texture& in, double u, double v) { return in.sample(u, v); }, 0);
        convolution.setConvolutionKernel(matrix(kLopsided));
        expectFilter(convolution, picture, convolved(kLopsided));
        GPUImageEmbossFilter emboss;
        expectFilter(emboss, picture, convolved(embossKernel(1)));
        emboss.setIntensity(-2.5F);
        expectFilter(emboss, picture, convolved(embossKernel(-2.5)));
    }
}

TEST_F(NeighbourFilterTest, ABrightPixelIsDarkBelowRightAndBrightAboveLeft)
{
    const CGImage picture = makePicture(5, 5, [](int x, int y) {
        const auto grey = static_cast<std::uint8_t>(x == 2 && y == 2 ? 140 : 100);
        return Rgba{grey, grey, grey, 255};
    });
    GPUImageEmbossFilter filter;
    const CGImage relief = filter.newCGImageByFilteringCGImage(picture);
    ASSERT_TRUE(relief);
    const std::array<std::array<int, 3>, 3> wanted{{{180, 140, 100}, {140, 140, 60}, {100, 60, 20}}};
    for (int y = 0; y < 3; ++y) {
        for (int x = 0; x < 3; ++x) {
            const int got = pixelAt(relief, x + 1, y + 1)[0];
            EXPECT_NEAR(got, wanted[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)], 1) << x << ", " << y;
        }
    }
}

TEST_F(NeighbourFilterTest, NeighboursAreThoseOfTheTextureInAllRotations)
{
    const CGImage picture = noisePicture(37, 23, true);
    for (int number = 0; number < 8; ++number) {
        SCOPED_TRACE("rotation " + std::to_string(number));
        const auto rotation = static_cast<GPUImageRotationMode>(number);
        GPUImage3x3ConvolutionFilter filter;
        filter.setConvolutionKernel(matrix(kLopsided));
        onQueue([&] { filter.setInputRotation(rotation, 0); });
        expectPicture(filter.newCGImageByFilteringCGImage(picture),
                      turned(evaluated(picture, convolved(kLopsided)), rotation));
    }
    expectFilterInAllRotations([] { return std::make_shared<GPUImageToonFilter>(); }, gradientPicture(37, 23, true),
                               posterized(0.2, 10));
}

/// As `posterized`, but where the edge is as steep as the threshold within what reads of neighbours are off (a step of
/// 1/256 towards the next texel, eight times), either side of it is right.
void expectPosterized(GPUImageOutput& filter, const CGImage& picture, double threshold, double levels)
{
    constexpr double kDoubt = 0.02;
    const CGImage got = filter.newCGImageByFilteringCGImage(picture);
    const CGImage inked = evaluated(picture, posterized(threshold - kDoubt, levels));
    const CGImage plain = evaluated(picture, posterized(threshold + kDoubt, levels));
    ASSERT_TRUE(got);
    ASSERT_EQ(got.size(), picture.size());
    for (int y = 0; y < got.height(); ++y) {
        for (int x = 0; x < got.width(); ++x) {
            const Rgba pixel = pixelAt(got, x, y);
            ASSERT_LE(std::min(difference(pixel, pixelAt(inked, x, y)), difference(pixel, pixelAt(plain, x, y))), 2)
                << x << ", " << y;
        }
    }
}

TEST_F(NeighbourFilterTest, CartoonsMatchTheirFormula)
{
    for (const CGImage& picture : usualPictures()) {
        GPUImageToonFilter toon;
        expectPosterized(toon, picture, 0.2, 10);
        GpuImageCustomFilter3 poster;
        expectPosterized(poster, picture, 1, 10);
        poster.setThreshold(2.03F);
        poster.setQuantizationLevels(3.5F);
        expectPosterized(poster, picture, 2.03, 3.5);
    }
}

TEST_F(NeighbourFilterTest, EdgesGoBlackFromTheThresholdOn)
{
    // Only the pixel above differs, which counts twice.
    const auto pictureWithRedAbove = [](std::uint8_t red) {
        return makePicture(3, 3, [red](int x, int y) {
            return x == 1 && y == 0 ? Rgba{red, 255, 255, 255} : Rgba{0, 255, 255, 255};
        });
    };
    const auto greenAtTheCentre = [&](GPUImageToonFilter& filter, std::uint8_t red) {
        return pixelAt(filter.newCGImageByFilteringCGImage(pictureWithRedAbove(red)), 1, 1)[1];
    };
    GPUImageToonFilter filter;
    EXPECT_EQ(greenAtTheCentre(filter, 25), 255) << "50/255 is below 0.2";
    EXPECT_EQ(greenAtTheCentre(filter, 26), 0) << "52/255 is above 0.2";
    // 255 above makes 2 exactly, in any arithmetic.
    filter.setThreshold(2.0F);
    EXPECT_EQ(greenAtTheCentre(filter, 255), 0) << "at the threshold";
    filter.setThreshold(2.001F);
    EXPECT_EQ(greenAtTheCentre(filter, 255), 255) << "just below it";
}

/// A read just beside a texel's centre may take a 1/256 part of the next one.
constexpr int kReads = 1;

TEST_F(NeighbourFilterTest, ErosionAndDilationTakeTheExtremeOfTheSquare)
{
    for (const auto& [radius, reach] : {std::pair{0U, 1}, {1U, 1}, {2U, 2}, {3U, 3}, {4U, 4}, {9U, 4}}) {
        SCOPED_TRACE("radius " + std::to_string(radius));
        for (const CGImage& picture : usualPictures()) {
            GPUImageErosionFilter erosion(radius);
            expectFilter(erosion, picture, extremeRed(false, reach, reach), kReads);
            GPUImageDilationFilter dilation(radius);
            expectFilter(dilation, picture, extremeRed(true, reach, reach), kReads);
        }
    }
    GPUImageErosionFilter byDefault;
    expectFilter(byDefault, noisePicture(37, 23, true), extremeRed(false, 1, 1), kReads);
}

TEST_F(NeighbourFilterTest, TwoPassesGoDownAndAcrossInAllRotations)
{
    const auto downwardsWider = [] {
        auto filter = std::make_shared<GPUImageErosionFilter>(2);
        filter->setVerticalTexelSpacing(3);
        return filter;
    };
    expectFilterInAllRotations(downwardsWider, noisePicture(37, 23, true), extremeRed(false, 2, 2, 3), kReads);
}

TEST_F(NeighbourFilterTest, AStepOfOnesOwnStaysWhateverTheSize)
{
    const CGImage picture = noisePicture(40, 20, false);
    GPUImage3x3ConvolutionFilter filter;
    filter.setConvolutionKernel(matrix(kLopsided));
    filter.setTexelWidth(3.0F / 40);
    expectFilter(filter, picture, convolved(kLopsided, 3, 0));
    filter.setTexelHeight(2.0F / 20);
    expectFilter(filter, picture, convolved(kLopsided, 3, 2));
    expectFilter(filter, noisePicture(80, 40, false), convolved(kLopsided, 6, 4));

    GPUImage3x3ConvolutionFilter after;
    ASSERT_TRUE(after.newCGImageByFilteringCGImage(picture));
    EXPECT_EQ(after.texelWidth(), 1.0F / 40);
    EXPECT_EQ(after.texelHeight(), 1.0F / 20);
    after.setConvolutionKernel(matrix(kLopsided));
    after.setTexelWidth(0);
    expectFilter(after, noisePicture(40, 10, true), [&](const Texture& in, double u, double v) {
        // The step down is that of the former picture, half a pixel here: between two texels.
        Color sum{0, 0, 0, in.sample(u, v)[3]};
        for (std::size_t row = 0; row < 3; ++row) {
            const Color neighbour = in.sample(u, v + (static_cast<double>(row) - 1) / 20);
            for (std::size_t k = 0; k < 3; ++k)
                sum[k] += (kLopsided[row][0] + kLopsided[row][1] + kLopsided[row][2]) * neighbour[k];
        }
        return sum;
    });
}

TEST_F(NeighbourFilterTest, FiltersOfOneProgramDrawWithTheirOwnValues)
{
    // Both are set up before the first draws.
    const CGImage picture = noisePicture(16, 8, true);
    const auto source = std::make_shared<FrameSource>();
    const auto large = std::make_shared<GPUImage3x3ConvolutionFilter>();
    const auto small = std::make_shared<GPUImage3x3ConvolutionFilter>();
    const auto toon = std::make_shared<GPUImageToonFilter>();
    const auto poster = std::make_shared<GpuImageCustomFilter3>();
    large->setConvolutionKernel(matrix(kFromTheLeft));
    small->setConvolutionKernel(matrix(kFromTheLeft));
    small->forceProcessingAtSize({4, 2});
    std::vector<std::shared_ptr<CountingConsumer>> consumers;
    for (const std::shared_ptr<GPUImageFilter>& filter :
         std::vector<std::shared_ptr<GPUImageFilter>>{large, small, toon, poster}) {
        source->addTarget(filter);
        consumers.push_back(consumerOf(*filter));
        consumers.back()->keepPixels(true);
    }
    for (int frame = 0; frame < 2; ++frame) {
        source->push(picture, second(frame));
        expectPicture(consumers[0]->last().pixels, evaluated(picture, convolved(kFromTheLeft)));
        expectPicture(consumers[2]->last().pixels, evaluated(picture, posterized(0.2, 10)));
        expectPicture(consumers[3]->last().pixels, evaluated(picture, posterized(1, 10)));
        // A pixel of the small one is the middle of 4 x 4, and its neighbour's middle lies 4 to the left.
        const CGImage quarter = consumers[1]->last().pixels;
        const Texture texture(picture);
        for (int x = 0; x < 4; ++x) {
            const double wanted = 255 * texture.sample(x / 4.0 + 0.125 - 0.25, 0.25)[0];
            EXPECT_NEAR(pixelAt(quarter, x, 0)[0], wanted, 2) << x;
        }
    }
}

} // namespace
} // namespace lamina::test
