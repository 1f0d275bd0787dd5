#include "GLCalls.h"
#include "GraphFixture.h"
#include "TestPictures.h"
#include "gpu/core/GPUImageRotationMode.h"
#include "gpu/core/GPUImageStage.h"
#include "gpu/filters/blur/GPUImageBilateralFilter.h"
#include "gpu/filters/blur/GPUImageGaussianBlurPositionFilter.h"
#include "gpu/filters/blur/GPUImageGaussianSelectiveBlurFilter.h"
#include "gpu/filters/blur/GPUImageHighPassFilter.h"
#include "gpu/filters/blur/GPUImageKuwaharaFilter.h"
#include "gpu/filters/blur/GPUImageLanczosResamplingFilter.h"
#include "gpu/filters/blur/GPUImageLowPassFilter.h"
#include "gpu/filters/blur/GPUImageMotionBlurFilter.h"
#include "gpu/filters/blur/GPUImageSharpenFilter.h"
#include "gpu/filters/blur/GPUImageTiltShiftFilter.h"
#include "gpu/filters/blur/GPUImageZoomBlurFilter.h"
#include "gpu/filters/blur/GPUImageiOSBlurFilter.h"

#include <typeinfo>
#include <utility>

// What blurs do beside their formulas, which a table holds against numpy.

namespace lamina::test {
namespace {

using BlurBehaviourTest = GraphFixture;

CGImage noise(int width, int height)
{
    return noisePicture(width, height, CGImageAlphaInfo::Last);
}

/// Filters that have a direction or a place in the picture, off its middle.
std::vector<std::shared_ptr<GPUImageStage>> directed()
{
    const auto position = std::make_shared<GPUImageGaussianBlurPositionFilter>();
    position->setBlurCenter({0.3, 0.8});
    const auto selective = std::make_shared<GPUImageGaussianSelectiveBlurFilter>();
    selective->setExcludeCirclePoint({0.3, 0.8});
    const auto tilt = std::make_shared<GPUImageTiltShiftFilter>();
    tilt->setTopFocusLevel(0.1F);
    const auto motion = std::make_shared<GPUImageMotionBlurFilter>();
    motion->setBlurAngle(25);
    const auto zoom = std::make_shared<GPUImageZoomBlurFilter>();
    zoom->setBlurCenter({0.3, 0.8});
    zoom->setBlurSize(4);
    const auto sharpen = std::make_shared<GPUImageSharpenFilter>();
    sharpen->setSharpness(0.2F);
    const auto lanczos = std::make_shared<GPUImageLanczosResamplingFilter>();
    lanczos->setOriginalImageSize({20, 10});
    return {position, selective, tilt, motion, zoom, sharpen, lanczos, std::make_shared<GPUImageiOSBlurFilter>()};
}

TEST_F(BlurBehaviourTest, PlacesAndDirectionsAreThoseOfTheUprightPicture)
{
    const CGImage picture = noise(23, 14);
    const auto filtered = [&](GPUImageStage& filter, const CGImage& input, GPUImageRotationMode rotation) {
        onQueue([&] { filter.setInputRotation(rotation, 0); });
        return filter.newCGImageByFilteringCGImage(input);
    };
    GPUImageFilter turn;
    for (const auto& filter : directed()) {
        for (int number = 0; number < 8; ++number) {
            const auto rotation = static_cast<GPUImageRotationMode>(number);
            EXPECT_TRUE(imagesMatch(filtered(*filter, picture, rotation),
                                    filtered(*filter, filtered(turn, picture, rotation), kGPUImageNoRotation), 1))
                << typeid(*filter).name() << " rotation " << number;
        }
    }
}

TEST_F(BlurBehaviourTest, OthersThanItsOwnSamplesDoNotChangeABilateral)
{
    GPUImageBilateralFilter filter;
    const CGImage wanted = filter.newCGImageByFilteringCGImage(noise(23, 14));
    filter.setBlurRadiusInPixels(9);
    filter.setBlurRadiusAsFractionOfImageWidth(0.3F);
    EXPECT_TRUE(imagesMatch(filter.newCGImageByFilteringCGImage(noise(23, 14)), wanted));
}

TEST_F(BlurBehaviourTest, ARadiusOfKuwaharaHasOneShader)
{
    GPUImageKuwaharaFilter filter;
    GPUImageKuwaharaFilter other;
    // The vertex shader is compiled with it.
    for (const auto& [radius, made] : {std::pair{3, 0}, {4, 3}, {4, 0}, {20, 3}, {16, 0}, {4, 0}}) {
        const GLCalls before = glCallsSoFar();
        filter.setRadius(radius);
        other.setRadius(radius);
        EXPECT_EQ((glCallsSoFar() - before).objects, made) << radius;
    }
}

TEST_F(BlurBehaviourTest, WhatResizesGivesTheSizeThatIsAskedFor)
{
    const CGImage even = solidPicture(80, 60, {200, 100, 50, 255});
    for (const std::shared_ptr<GPUImageStage>& filter : std::initializer_list<std::shared_ptr<GPUImageStage>>{
             std::make_shared<GPUImageLanczosResamplingFilter>(), std::make_shared<GPUImageiOSBlurFilter>()}) {
        SCOPED_TRACE(typeid(*filter).name());
        const auto size = [&] { return filter->newCGImageByFilteringCGImage(even).size(); };
        EXPECT_EQ(size(), (IntSize{80, 60}));
        filter->forceProcessingAtSize({31, 17});
        EXPECT_EQ(size(), (IntSize{31, 17}));
        filter->forceProcessingAtSizeRespectingAspectRatio({40, 40});
        EXPECT_EQ(size(), (IntSize{40, 30}));
        filter->forceProcessingAtSize({});
        EXPECT_EQ(size(), (IntSize{80, 60}));
    }
}

class TimeFilterTest : public GraphFixture {
protected:
    /// The grey that comes out for a frame of one grey.
    int after(int level)
    {
        const auto byte = static_cast<std::uint8_t>(level);
        m_source->push({4, 3}, {byte, byte, byte, 255}, second(m_frame++));
        return pixelAt(m_consumer->last().pixels, 1, 1)[0];
    }
    std::vector<int> after(std::initializer_list<int> levels)
    {
        std::vector<int> got;
        for (const int level : levels)
            got.push_back(after(level));
        return got;
    }
    std::shared_ptr<CountingConsumer> m_consumer;

private:
    int m_frame = 0;
};

TEST_F(TimeFilterTest, PastFramesAreMixedInOrTakenAwayUntilTheSourceGoes)
{
    struct Case {
        std::shared_ptr<GPUImageStage> filter;
        std::vector<int> wanted;
    };
    const auto low = std::make_shared<GPUImageLowPassFilter>();
    const auto high = std::make_shared<GPUImageHighPassFilter>();
    low->setFilterStrength(0.25F);
    high->setFilterStrength(0.25F);
    // low: 200; 75 + 50; 0 + 50; 75 + 31.25
    for (auto& [filter, wanted] : {Case{low, {200, 125, 50, 106}}, Case{high, {200, 25, 50, 6}}}) {
        SCOPED_TRACE(typeid(*filter).name());
        for (int round = 0; round < 2; ++round) {
            m_consumer = consumerOf(*filter);
            m_source->addTarget(filter, 0);
            EXPECT_EQ(after({200, 100}), std::vector(wanted.begin(), wanted.begin() + 2));
            filter->removeAllTargets();
            m_consumer = consumerOf(*filter);
            EXPECT_EQ(after({0, 100}), std::vector(wanted.begin() + 2, wanted.end())) << "targets have no say";
            m_source->removeTarget(filter);
            EXPECT_EQ(idleFramebuffers(), GPUImageFramebufferCache::livingCount());
        }
        const CGImage picture = noise(9, 5);
        for (int call = 0; call < 2; ++call)
            EXPECT_TRUE(imagesMatch(filter->newCGImageByFilteringCGImage(picture), picture));
    }
}

TEST_F(TimeFilterTest, NothingKeepsItselfAlive)
{
    auto filter = std::make_shared<GPUImageHighPassFilter>();
    const std::weak_ptr<GPUImageStage> members[] = {
        filter, filter->filterAtIndex(0), filter->terminalFilter(),
        std::dynamic_pointer_cast<GPUImageFilterGroup>(filter->filterAtIndex(0))->terminalFilter()};
    m_consumer = consumerOf(*filter);
    m_source->addTarget(filter, 0);
    after({200, 100, 0});
    m_source->removeAllTargets();
    filter.reset();
    for (const auto& member : members)
        EXPECT_TRUE(member.expired());
    EXPECT_EQ(idleFramebuffers(), GPUImageFramebufferCache::livingCount());
}

TEST_F(TimeFilterTest, AFrozenFilterForgets)
{
    const auto filter = std::make_shared<GPUImageLowPassFilter>();
    const auto member = std::dynamic_pointer_cast<GPUImageFilter>(filter->terminalFilter());
    m_consumer = consumerOf(*filter);
    m_source->addTarget(filter, 0);
    EXPECT_EQ(after({200, 100}), (std::vector{200, 150}));
    member->setPreventRendering(true);
    after(0);
    EXPECT_EQ(idleFramebuffers(), GPUImageFramebufferCache::livingCount());
    member->setPreventRendering(false);
    EXPECT_EQ(after({50, 100}), (std::vector{50, 75}));
}

} // namespace
} // namespace lamina::test
