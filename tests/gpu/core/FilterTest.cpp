#include "GraphFixture.h"

#include "TestPictures.h"
#include "gpu/core/GPUImageRotationMode.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/UIImage.h"

#include <array>
#include <cstdint>
#include <thread>

namespace lamina::test {
namespace {

class FilterTest : public GraphFixture {
protected:
    std::shared_ptr<GPUImageFilter> filterAfterSource()
    {
        auto filter = std::make_shared<GPUImageFilter>();
        m_source->addTarget(filter);
        return filter;
    }
};

struct Rotation {
    GPUImageRotationMode mode;
    std::vector<std::vector<int>> grid; ///< what becomes of 1 2 3 over 4 5 6
    CGPoint point;                      ///< and of (0.25, 0.0625)
};

const Rotation kRotations[] = {
    {kGPUImageNoRotation, {{1, 2, 3}, {4, 5, 6}}, {0.25, 0.0625}},
    {kGPUImageRotateLeft, {{3, 6}, {2, 5}, {1, 4}}, {0.9375, 0.25}},
    {kGPUImageRotateRight, {{4, 1}, {5, 2}, {6, 3}}, {0.0625, 0.75}},
    {kGPUImageFlipVertical, {{4, 5, 6}, {1, 2, 3}}, {0.25, 0.9375}},
    {kGPUImageFlipHorizontal, {{3, 2, 1}, {6, 5, 4}}, {0.75, 0.0625}},
    // Those with two names flip first.
    {kGPUImageRotateRightFlipVertical, {{1, 4}, {2, 5}, {3, 6}}, {0.0625, 0.25}},
    {kGPUImageRotateRightFlipHorizontal, {{6, 3}, {5, 2}, {4, 1}}, {0.9375, 0.75}},
    {kGPUImageRotate180, {{6, 5, 4}, {3, 2, 1}}, {0.75, 0.9375}},
};

TEST_F(FilterTest, PassesEveryRotationThroughExactly)
{
    const CGImage picture = makePicture(3, 2, [](int x, int y) {
        return Rgba{static_cast<std::uint8_t>(1 + x + 3 * y), 0, 0, 255};
    });
    const auto filter = filterAfterSource();
    const auto consumer = consumerOf(*filter);
    for (const auto& [mode, grid, point] : kRotations) {
        SCOPED_TRACE(mode);
        m_source->setRotation(mode);
        m_source->push(picture, second(1));
        EXPECT_EQ(componentGrid(consumer->last().pixels), grid);
        EXPECT_EQ(consumer->toldRotation(), kGPUImageNoRotation) << "what comes out is upright";
        EXPECT_EQ(GPUImageFilter::rotatedPoint({0.25, 0.0625}, mode), point);
    }
    EXPECT_EQ(GPUImageFilter::textureCoordinatesForRotation(static_cast<GPUImageRotationMode>(8)),
              GPUImageFilter::textureCoordinatesForRotation(kGPUImageNoRotation));
}

TEST_F(FilterTest, CountsFallAsTargetsDraw)
{
    const auto filter = filterAfterSource();
    const auto first = consumerOf(*filter);
    const auto second = consumerOf(*filter);
    m_source->push({4, 4}, {1, 2, 3, 4}, kCMTimeZero);
    // Both hold a count before the first of them works; the filter's own is gone by then.
    EXPECT_EQ(first->last().counts, 2U);
    EXPECT_EQ(second->last().counts, 1U);
    EXPECT_EQ(first->last().framebuffer.lock(), second->last().framebuffer.lock());
    EXPECT_EQ(filter->framebufferForOutput(), nullptr);
    EXPECT_EQ(idleFramebuffers(), 2U) << "the source's frame and the output";
}

TEST_F(FilterTest, PreventedRenderingGivesCountsBackAndCallsNobody)
{
    const auto filter = filterAfterSource();
    const auto consumer = consumerOf(*filter);
    m_source->push({4, 4}, {1, 2, 3, 4}, second(1));
    filter->setPreventRendering(true);
    m_source->push({6, 6}, {1, 2, 3, 4}, second(2));
    EXPECT_EQ(consumer->frames().size(), 1U);
    EXPECT_EQ(idleFramebuffers(), 3U);
    EXPECT_EQ(filter->outputFrameSize(), (CGSize{4, 4})) << "sizes are frozen too";
    filter->setPreventRendering(false);
    m_source->push({6, 6}, {1, 2, 3, 4}, second(3));
    EXPECT_EQ(consumer->last().size, (CGSize{6, 6}));
}

TEST_F(FilterTest, ForcedAndLargestSizesHold)
{
    struct Bounded : GPUImageFilter {
        CGSize maximumOutputSize() const override { return m_maximum; }
        CGSize m_maximum;
    };
    const auto filter = std::make_shared<Bounded>();
    m_source->addTarget(filter);
    const auto sizeOf = [&](IntSize input) {
        m_source->push(input, {1, 2, 3, 4}, kCMTimeZero);
        return filter->sizeOfFBO();
    };
    filter->forceProcessingAtSizeRespectingAspectRatio({200, 200});
    EXPECT_EQ(sizeOf({400, 100}), (CGSize{200, 50}));
    EXPECT_EQ(sizeOf({4, 8}), (CGSize{100, 200})) << "small ones grow";
    filter->forceProcessingAtSize({20, 10});
    EXPECT_EQ(sizeOf({400, 100}), (CGSize{20, 10})) << "the bound is gone";
    filter->forceProcessingAtSize({});
    filter->m_maximum = {8, 6};
    EXPECT_EQ(sizeOf({16, 4}), (CGSize{8, 6}));
    EXPECT_EQ(sizeOf({7, 40}), (CGSize{7, 40})) << "only the width is compared";
}

TEST_F(FilterTest, FiltersOfOneProgramKeepTheirOwnValues)
{
    const auto half = multiplying(0.5F);
    const auto fifth = multiplying(0.2F);
    m_source->addTarget(half);
    half->addTarget(fifth);
    const auto end = consumerOf(*fifth);
    for (int i = 0; i < 2; ++i) {
        m_source->push({2, 2}, {200, 100, 0, 250}, second(i));
        EXPECT_TRUE(imagesMatch(end->last().pixels, solidPicture(2, 2, {20, 10, 0, 25})));
    }
    // A later value takes the former's place, from the next frame.
    fifth->setFloat(1.0F, "factor");
    m_source->push({2, 2}, {200, 100, 0, 250}, second(3));
    EXPECT_TRUE(imagesMatch(end->last().pixels, solidPicture(2, 2, {100, 50, 0, 125})));
}

TEST_F(FilterTest, EveryKindOfUniformArrives)
{
    const auto filter = std::make_shared<GPUImageFilter>(R"(
        precision highp float;
        varying vec2 textureCoordinate;
        uniform int count; uniform vec2 corner; uniform vec2 extent; uniform vec3 three; uniform vec4 four;
        uniform float list[3];
        void main() {
            gl_FragColor = vec4(float(count) + corner.x + 2.0 * corner.y + 4.0 * extent.x + 8.0 * extent.y,
                                three.x + 10.0 * three.y + 40.0 * three.z, list[0] + 2.0 * list[1] + 4.0 * list[2],
                                four.x + 2.0 * four.y + 4.0 * four.z + 8.0 * four.w) / 255.0;
        })");
    filter->setInteger(100, "count");
    filter->setPoint({1, 2}, "corner"); // 1 + 4
    filter->setSize({3, 4}, "extent");  // 12 + 32: the sum is 149
    filter->setFloatVec3({1, 2, 3}, "three");
    filter->setFloatVec4({1, 2, 3, 4}, "four");
    filter->setFloatArray(std::array{1.0F, 2.0F, 3.0F}, "list"); // 1 + 4 + 12
    filter->setFloat(1, "noSuchUniform");
    EXPECT_TRUE(imagesMatch(filter->newCGImageByFilteringCGImage(solidPicture(1, 1, {})),
                            solidPicture(1, 1, {149, 141, 17, 49})));
}

TEST_F(FilterTest, CompletionHearsOfEveryFrameBeforeTheTargetsAndTheEndIsToldOnce)
{
    const auto filter = filterAfterSource();
    const auto consumer = consumerOf(*filter);
    std::vector<CMTime> times;
    filter->setFrameProcessingCompletionBlock([&](GPUImageOutput& output, const CMTime& time) {
        EXPECT_TRUE(output.framebufferForOutput());
        EXPECT_EQ(consumer->frames().size(), times.size());
        times.push_back(time);
    });
    for (const CMTime& time : {second(4), kCMTimeIndefinite}) {
        m_source->push({2, 2}, {}, time);
        EXPECT_EQ(consumer->last().time, time);
    }
    EXPECT_THAT(times, testing::ElementsAre(second(4), kCMTimeIndefinite));
    m_source->removeTarget(filter);
    onQueue([&] { filter->endProcessing(); });
    EXPECT_EQ(consumer->endings(), 1);
    m_source->addTarget(filter);
    m_source->push({2, 2}, {}, second(5));
    m_source->removeTarget(filter);
    EXPECT_EQ(consumer->endings(), 2) << "of what came after the first end";
}

TEST_F(FilterTest, AKeptFrameCanBeReadAgain)
{
    const auto filter = filterAfterSource();
    EXPECT_FALSE(filter->newCGImageFromCurrentlyProcessedOutput()) << "nothing was drawn yet";
    filter->useNextFrameForImageCapture();
    m_source->push({3, 3}, {7, 8, 9, 255}, kCMTimeZero);
    for (int i = 0; i < 2; ++i)
        EXPECT_TRUE(imagesMatch(filter->newCGImageFromCurrentlyProcessedOutput(), solidPicture(3, 3, {7, 8, 9, 255})));

    // Nor does a third reading take the count of a filter that keeps a frame in the same place by now.
    m_source->removeAllTargets();
    const auto other = filterAfterSource();
    other->useNextFrameForImageCapture();
    m_source->push({3, 3}, {1, 2, 3, 255}, kCMTimeZero);
    ASSERT_EQ(other->framebufferForOutput(), filter->framebufferForOutput());
    EXPECT_TRUE(filter->newCGImageFromCurrentlyProcessedOutput());
    EXPECT_EQ(other->framebufferForOutput()->framebufferReferenceCount(), 1U);
}

TEST_F(FilterTest, ACaptureWaitsForAFrameThatComesLate)
{
    const auto filter = filterAfterSource();
    filter->useNextFrameForImageCapture();
    std::thread late([&] { m_source->push({2, 2}, {3, 2, 1, 255}, kCMTimeZero); });
    const UIImage image = filter->imageFromCurrentFramebufferWithOrientation(UIImageOrientation::Left);
    late.join();
    EXPECT_TRUE(imagesMatch(image.cgImage(), solidPicture(2, 2, {3, 2, 1, 255})));
    EXPECT_EQ(image.imageOrientation(), UIImageOrientation::Left);
}

} // namespace
} // namespace lamina::test
