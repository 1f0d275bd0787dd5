#include "GraphFixture.h"
#include "TestPictures.h"
#include "gpu/core/GPUImageRotationMode.h"
#include "gpu/filters/blend/GPUImagePoissonBlendFilter.h"
#include "gpu/filters/effect/GPUImageCropFilter.h"
#include "gpu/filters/effect/GPUImageJFAVoronoiFilter.h"
#include "gpu/filters/effect/GPUImageLineGenerator.h"
#include "gpu/filters/effect/GPUImageVoronoiConsumerFilter.h"

#include <cmath>

// What generators, diagrams and cuts do beside their formulas.

namespace lamina::test {
namespace {

class GeneratorTest : public GraphFixture {
protected:
    /// What the filter makes of the two pictures as they lie.
    static CGImage combined(const std::shared_ptr<GPUImageFilter>& filter, const CGImage& first, const CGImage& second,
                            GPUImageRotationMode firstLies = kGPUImageNoRotation,
                            GPUImageRotationMode secondLies = kGPUImageNoRotation)
    {
        FrameSource sources[2];
        sources[0].setRotation(firstLies);
        sources[1].setRotation(secondLies);
        sources[0].addTarget(filter, 0);
        sources[1].addTarget(filter, 1);
        const auto consumer = consumerOf(*filter);
        sources[1].push(second, test::second(1));
        sources[0].push(first, test::second(1));
        CGImage pixels = consumer->last().pixels;
        filter->removeAllTargets();
        return pixels;
    }
};

TEST_F(GeneratorTest, WithoutAPictureMarksStandOnNothingAndStayForPictures)
{
    const auto lines = std::make_shared<GPUImageLineGenerator>();
    const auto consumer = consumerOf(*lines);
    lines->renderLinesFromArray({{0, 0.25}}, second(1));
    EXPECT_TRUE(consumer->frames().empty()) << "there is no size";
    lines->forceProcessingAtSize({8, 4});
    lines->setLineColorRed(1, 0, 0);
    const auto expectLineOver = [&](Rgba ground) {
        EXPECT_TRUE(imagesMatch(consumer->last().pixels, makePicture(8, 4, [&](int, int y) {
                                    return y == 2 ? Rgba{255, 0, 0, 255} : ground;
                                })));
    };
    lines->renderLinesFromArray({{-INFINITY, 0.125}, {NAN, 0}, {0, INFINITY}}, second(0));
    EXPECT_TRUE(imagesMatch(consumer->last().pixels, makePicture(8, 4, [&](int x, int) {
                                return x == 4 ? Rgba{255, 0, 0, 255} : Rgba{0, 0, 0, 0};
                            })));
    for (int frame = 1; frame < 3; ++frame) {
        lines->renderLinesFromArray({{0, 0.25}}, second(frame));
        expectLineOver({0, 0, 0, 0});
        EXPECT_EQ(consumer->last().time, second(frame));
    }
    m_source->addTarget(lines);
    m_source->push({8, 4}, {10, 20, 30, 40}, second(3));
    expectLineOver({10, 20, 30, 40});
    m_source->removeAllTargets();
}

TEST_F(GeneratorTest, EitherOfTwoPicturesMayLieTurned)
{
    const auto poisson = std::make_shared<GPUImagePoissonBlendFilter>();
    poisson->setNumIterations(3);
    const auto cells = std::make_shared<GPUImageVoronoiConsumerFilter>();
    const CGImage picture = noisePicture(12, 7, CGImageAlphaInfo::Last);
    const CGImage other = noisePicture(12, 7, CGImageAlphaInfo::Last, 5);
    // Places within the picture.
    const CGImage codes = makePicture(12, 7, [](int x, int y) {
        return Rgba{0, static_cast<std::uint8_t>(11 - x), 0, static_cast<std::uint8_t>(y / 2)};
    });
    const auto turn = std::make_shared<GPUImageFilter>();
    for (int number = 0; number < 8; ++number) {
        const auto rotation = static_cast<GPUImageRotationMode>(number);
        const auto turned = [&](const CGImage& upright) {
            onQueue([&] { turn->setInputRotation(rotation, 0); });
            return turn->newCGImageByFilteringCGImage(upright);
        };
        EXPECT_TRUE(
            imagesMatch(combined(poisson, picture, other, rotation), combined(poisson, turned(picture), other), 2))
            << number;
        EXPECT_TRUE(imagesMatch(combined(poisson, picture, other, kGPUImageNoRotation, rotation),
                                combined(poisson, picture, turned(other)), 2))
            << number;
        EXPECT_TRUE(imagesMatch(combined(cells, picture, codes, rotation), combined(cells, turned(picture), codes), 1))
            << number;
    }
}

TEST_F(GeneratorTest, CellsOfACoarserDiagramFillThePicture)
{
    const auto diagram = std::make_shared<GPUImageJFAVoronoiFilter>();
    diagram->setSizeInPixels({8, 6});
    const auto cells = std::make_shared<GPUImageVoronoiConsumerFilter>();
    // A bright block on the left, another on the right.
    for (const bool bright : {true, false}) {
        const CGImage picture = makePicture(16, 12, [&](int x, int y) {
            const bool inBlock = (x / 2 == 1 || x / 2 == 6) && y / 2 == 3;
            return inBlock && bright ? Rgba{255, static_cast<std::uint8_t>(x < 8 ? 0 : 200), 0, 255}
                                     : Rgba{9, 9, 9, 255};
        });
        const CGImage codes = diagram->newCGImageByFilteringCGImage(picture);
        ASSERT_EQ(codes.width(), 8);
        EXPECT_TRUE(imagesMatch(combined(cells, picture, codes), makePicture(16, 12, [&](int x, int) {
                                    if (!bright)
                                        return Rgba{0, 0, 0, 0};
                                    return x < 8 ? Rgba{255, 0, 0, 255} : Rgba{255, 200, 0, 255};
                                })));
    }
}

TEST_F(GeneratorTest, ACutBeyondThePictureIsRefused)
{
    const auto part = std::make_shared<GPUImageCropFilter>();
    const CGRect lowerHalf{0, 0.5, 1, 0.5};
    part->setCropRegion(lowerHalf);
    for (const CGRect& wrong :
         {CGRect{0, 0.6, 1, 0.5}, CGRect{-0.1, 0, 1, 1}, CGRect{0, 0, 0, 1}, CGRect{0, 0, NAN, 1}})
        part->setCropRegion(wrong);
    EXPECT_EQ(part->cropRegion(), lowerHalf);
    part->forceProcessingAtSizeRespectingAspectRatio({10, 10});
    EXPECT_EQ(part->newCGImageByFilteringCGImage(solidPicture(8, 8, {})).height(), 5);
}

} // namespace
} // namespace lamina::test
