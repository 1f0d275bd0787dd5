#include "FilterReference.h"
#include "GLCalls.h"
#include "GraphFixture.h"
#include "gpu/filters/GPUImageBoxBlurFilter.h"
#include "gpu/filters/GPUImageGaussianBlurFilter.h"

#include <clocale>
#include <cmath>
#include <locale>
#include <numbers>

namespace lamina::test {
namespace {

class BlurTest : public GraphFixture {};

/// Weights by distance, up to `reach`; they sum to 1 with both sides counted.
std::vector<double> bell(int reach, double sigma)
{
    std::vector<double> weights;
    double sum = 0;
    for (int i = 0; i <= reach; ++i) {
        weights.push_back(std::exp(-i * i / (2 * sigma * sigma)) / std::sqrt(2 * std::numbers::pi * sigma * sigma));
        sum += (i == 0 ? 1 : 2) * weights.back();
    }
    for (double& weight : weights)
        weight /= sum;
    return weights;
}

std::vector<double> box(int reach)
{
    return std::vector<double>(static_cast<std::size_t>(reach) + 1, 1.0 / (2 * reach + 1));
}

/// Every neighbour by itself along one axis.
Formula along(const std::vector<double>& weights, int dx, int dy)
{
    return [weights, dx, dy](const Texture& in, double u, double v) {
        const int x = static_cast<int>(u * in.width());
        const int y = static_cast<int>(v * in.height());
        const int reach = static_cast<int>(weights.size()) - 1;
        Color sum{};
        for (int i = -reach; i <= reach; ++i) {
            const Color neighbour = in.texel(x + i * dx, y + i * dy);
            for (std::size_t k = 0; k < sum.size(); ++k)
                sum[k] += weights[static_cast<std::size_t>(std::abs(i))] * neighbour[k];
        }
        return sum;
    };
}

/// Down, then across, with 8 bits in between.
CGImage blurred(const CGImage& input, const std::vector<double>& weights, int passes = 1, int step = 1)
{
    CGImage picture = input;
    for (int pass = 0; pass < passes; ++pass)
        picture = evaluated(evaluated(picture, along(weights, 0, step)), along(weights, step, 0));
    return picture;
}

TEST_F(BlurTest, SumsTheNeighboursOfEveryRadiusByTheBell)
{
    struct Case {
        float radius;
        int reach; // where a bell of area 1 falls below 1/256, made even; at most 62
    };
    for (const Case& c :
         {Case{1, 4}, Case{2, 6}, Case{4.5F, 12}, Case{10, 22}, Case{40, 54}, Case{62, 62}, Case{500, 62}}) {
        SCOPED_TRACE("radius " + std::to_string(c.radius));
        GPUImageGaussianBlurFilter filter;
        filter.setBlurRadiusInPixels(3); // a new filter has radius 2 already
        filter.setBlurRadiusInPixels(c.radius);
        EXPECT_EQ(filter.blurRadiusInPixels(), std::round(c.radius));
        const std::vector<CGImage> pictures =
            c.reach < 20 ? usualPictures() : std::vector{noisePicture(61, 35, true), noisePicture(1, 9, false)};
        for (const CGImage& picture : pictures) {
            const CGImage wanted = blurred(picture, bell(c.reach, std::round(static_cast<double>(c.radius))));
            expectPicture(filter.newCGImageByFilteringCGImage(picture), wanted);
        }
    }
}

TEST_F(BlurTest, ANewFilterIsNarrowerThanItsRadiusSetAnew)
{
    const CGImage picture = noisePicture(61, 35, true);
    GPUImageGaussianBlurFilter filter;
    expectPicture(filter.newCGImageByFilteringCGImage(picture), blurred(picture, bell(4, 2)));
    GPUImageBoxBlurFilter boxFilter;
    expectPicture(boxFilter.newCGImageByFilteringCGImage(picture), blurred(picture, box(4)));
}

TEST_F(BlurTest, BoxesOfEvenAndOddRadiusWeighAllAlike)
{
    for (const int reach : {1, 3, 6, 17}) {
        SCOPED_TRACE("radius " + std::to_string(reach));
        GPUImageBoxBlurFilter filter;
        filter.setBlurRadiusInPixels(static_cast<float>(reach));
        for (const CGImage& picture : usualPictures())
            expectPicture(filter.newCGImageByFilteringCGImage(picture), blurred(picture, box(reach)));
    }
}

TEST_F(BlurTest, LessThanOnePixelPassesThePictureThrough)
{
    const CGImage picture = noisePicture(37, 23, true);
    for (const float radius : {0.4F, 0.0F, -7.0F}) {
        GPUImageGaussianBlurFilter gaussian;
        gaussian.setBlurRadiusInPixels(radius);
        expectPicture(gaussian.newCGImageByFilteringCGImage(picture), picture, 0);
        GPUImageBoxBlurFilter boxFilter;
        boxFilter.setBlurRadiusInPixels(radius);
        expectPicture(boxFilter.newCGImageByFilteringCGImage(picture), picture, 0);
    }
    GPUImageGaussianBlurFilter filter;
    for (const float noNumber : {std::nanf(""), HUGE_VALF, -HUGE_VALF})
        filter.setBlurRadiusInPixels(noNumber);
    EXPECT_EQ(filter.blurRadiusInPixels(), 2.0F);
}

TEST_F(BlurTest, OneTexelReadsGiveTheSameAsPairs)
{
    const CGImage picture = noisePicture(37, 23, true);
    using Blur = GPUImageGaussianBlurFilter;
    for (const unsigned reach : {1U, 4U, 7U}) {
        GPUImageGaussianBlurFilter filter;
        filter.switchToVertexShader(Blur::vertexShaderForStandardBlurOfRadius(reach, 2.5),
                                    Blur::fragmentShaderForStandardBlurOfRadius(reach, 2.5));
        expectPicture(filter.newCGImageByFilteringCGImage(picture),
                      blurred(picture, bell(static_cast<int>(reach), 2.5)));
    }
}

TEST_F(BlurTest, NumbersInShadersDoNotHangOnTheLocale)
{
    struct Comma : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
    };
    const auto text = [] { return GPUImageGaussianBlurFilter::fragmentShaderForOptimizedBlurOfRadius(20, 8); };
    const std::string plain = text();
    EXPECT_THAT(plain, testing::HasSubstr("blurCoordinates[0]) * 0.0"));
    const std::locale before = std::locale::global(std::locale(std::locale::classic(), new Comma));
    EXPECT_EQ(text(), plain);
    std::locale::global(before);
    // C's own locale, where the machine has one with a comma.
    if (std::setlocale(LC_ALL, "de_DE.UTF-8") != nullptr) {
        EXPECT_EQ(text(), plain);
    }
    std::setlocale(LC_ALL, "C");
}

TEST_F(BlurTest, ShadersAreMadeOnlyForARadiusThatIsNew)
{
    GPUImageGaussianBlurFilter filter;
    const auto shadersFor = [&](float radius) {
        const GLCalls before = glCallsSoFar();
        filter.setBlurRadiusInPixels(radius);
        const GLCalls made = glCallsSoFar() - before;
        return made.shaders + made.programs;
    };
    EXPECT_EQ(shadersFor(2), 0) << "the radius of a new filter";
    EXPECT_EQ(shadersFor(23), 3) << "two shaders and a program for both passes";
    EXPECT_EQ(shadersFor(23.3F), 0) << "the same when rounded";
    EXPECT_EQ(shadersFor(24), 3);
    EXPECT_EQ(shadersFor(23), 0) << "used before";
}

TEST_F(BlurTest, FractionsBecomeARadiusWithTheNextSizeOnce)
{
    const CGImage wide = noisePicture(60, 30, false);
    GPUImageGaussianBlurFilter filter;
    filter.setBlurRadiusAsFractionOfImageWidth(0.1F);
    filter.setTexelSpacingMultiplier(1); // there is no size yet
    EXPECT_EQ(filter.blurRadiusInPixels(), 2.0F);
    expectPicture(filter.newCGImageByFilteringCGImage(wide), blurred(wide, bell(14, 6)));
    EXPECT_EQ(filter.blurRadiusInPixels(), 6.0F);
    ASSERT_TRUE(filter.newCGImageByFilteringCGImage(noisePicture(30, 60, false)));
    EXPECT_EQ(filter.blurRadiusInPixels(), 6.0F) << "the fraction is used up";

    filter.setBlurRadiusAsFractionOfImageHeight(0.1F);
    EXPECT_EQ(filter.blurRadiusAsFractionOfImageWidth(), 0.0F);
    filter.setBlurRadiusAsFractionOfImageHeight(-1);
    filter.setBlurRadiusAsFractionOfImageWidth(-1);
    EXPECT_EQ(filter.blurRadiusAsFractionOfImageHeight(), 0.1F);
    ASSERT_TRUE(filter.newCGImageByFilteringCGImage(wide));
    EXPECT_EQ(filter.blurRadiusInPixels(), 3.0F) << "negative fractions change nothing";

    filter.setBlurRadiusAsFractionOfImageWidth(0.5F);
    filter.setBlurRadiusInPixels(5);
    ASSERT_TRUE(filter.newCGImageByFilteringCGImage(wide));
    EXPECT_EQ(filter.blurRadiusInPixels(), 5.0F) << "a radius in pixels ends the fraction";
}

TEST_F(BlurTest, SpacingSetsTheSamplesApart)
{
    // The pairs' places lie between texels that are no neighbours then, so that only single reads can be summed up
    // here.
    const CGImage picture = noisePicture(37, 23, false);
    using Blur = GPUImageGaussianBlurFilter;
    GPUImageGaussianBlurFilter filter;
    filter.switchToVertexShader(Blur::vertexShaderForStandardBlurOfRadius(3, 2),
                                Blur::fragmentShaderForStandardBlurOfRadius(3, 2));
    filter.setTexelSpacingMultiplier(3);
    expectPicture(filter.newCGImageByFilteringCGImage(picture), blurred(picture, bell(3, 2), 1, 3));
}

TEST_F(BlurTest, FurtherPassesBlurWhatCameOutBefore)
{
    const CGImage picture = gradientPicture(37, 23, true);
    for (const int passes : {0, 1, 2, 3}) {
        SCOPED_TRACE(passes);
        GPUImageGaussianBlurFilter filter;
        filter.setBlurPasses(passes);
        // Each pass may be off by the reads of a smooth picture, half a step each time.
        expectPicture(filter.newCGImageByFilteringCGImage(picture), blurred(picture, bell(4, 2), std::max(passes, 1)));
    }
    // Flat areas must stay flat, hard edges soft: a picture of two halves, turned in all ways.
    const CGImage halves = makePicture(
        23, 14,
        [](int x, int y) {
            return x + y < 17 ? Rgba{255, 40, 0, 255} : Rgba{0, 90, 200, 30};
        },
        true);
    for (int number = 0; number < 8; ++number) {
        SCOPED_TRACE("rotation " + std::to_string(number));
        const auto rotation = static_cast<GPUImageRotationMode>(number);
        for (const int passes : {1, 2, 3}) {
            GPUImageGaussianBlurFilter filter;
            filter.setBlurPasses(passes);
            // Downwards alone: the pass that has to know how its input lies.
            filter.setHorizontalTexelSpacing(0);
            onQueue([&] { filter.setInputRotation(rotation, 0); });
            CGImage wanted = turned(halves, rotation);
            for (int pass = 0; pass < passes; ++pass)
                wanted = evaluated(wanted, along(bell(4, 2), 0, 1));
            expectPicture(filter.newCGImageByFilteringCGImage(halves), wanted);
        }
    }
}

TEST_F(BlurTest, PassesTakeTwoFramebuffersAndLeaveNoCounts)
{
    const CGImage picture = noisePicture(24, 16, false);
    const auto source = std::make_shared<FrameSource>();
    const auto filter = std::make_shared<GPUImageGaussianBlurFilter>();
    filter->setBlurPasses(3);
    source->addTarget(filter);
    const auto consumer = consumerOf(*filter);
    source->push(picture, second(0));
    EXPECT_EQ(consumer->last().counts, 1U) << "the consumer's own";
    const std::size_t idle = idleFramebuffers();
    EXPECT_EQ(idle, 3U) << "the source's and two of the filter's";

    const GLCalls before = glCallsSoFar();
    for (int frame = 1; frame < 10; ++frame)
        source->push(picture, second(frame));
    const GLCalls made = glCallsSoFar() - before;
    EXPECT_EQ(made.objectsMade(), 0);
    EXPECT_EQ(made.draws, 9 * 3 * 2);
    EXPECT_EQ(idleFramebuffers(), idle);

    // A kept frame is the last pass's, and is given back when it is taken.
    filter->useNextFrameForImageCapture();
    source->push(picture, second(10));
    EXPECT_EQ(idleFramebuffers(), idle - 1);
    expectPicture(filter->newCGImageFromCurrentlyProcessedOutput(), blurred(picture, bell(4, 2), 3));
    EXPECT_EQ(idleFramebuffers(), idle);

    filter->setPreventRendering(true);
    source->push(picture, second(11));
    EXPECT_EQ(idleFramebuffers(), idle) << "a frozen filter gives its input back";
}

} // namespace
} // namespace lamina::test
