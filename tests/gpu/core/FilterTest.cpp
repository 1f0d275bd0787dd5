#include "GraphFixture.h"

#include <chrono>

namespace lamina::test {
namespace {

/// Adds a constant to the red channel.
class Reddening : public GPUImageFilter {
public:
    explicit Reddening(float amount)
        : GPUImageFilter(R"(
            varying highp vec2 textureCoordinate;
            uniform sampler2D inputImageTexture;
            uniform lowp float amount;
            void main() {
                gl_FragColor = texture2D(inputImageTexture, textureCoordinate) + vec4(amount, 0.0, 0.0, 0.0);
            })")
    {
        setFloat(amount, "amount");
    }
};

class FilterTest : public GraphFixture {
protected:
    std::shared_ptr<GPUImageFilter> filterAfterSource()
    {
        auto filter = std::make_shared<GPUImageFilter>();
        m_source->addTarget(filter);
        return filter;
    }
    std::shared_ptr<FrameSource> m_source = std::make_shared<FrameSource>();
};

CGImage turnedRight(const CGImage& p)
{
    return rearranged(p, {p.height(), p.width()}, [&](int x, int y) { return IntSize{y, p.height() - 1 - x}; });
}
CGImage mirrored(const CGImage& p)
{
    return rearranged(p, p.size(), [&](int x, int y) { return IntSize{p.width() - 1 - x, y}; });
}
CGImage upsideDown(const CGImage& p)
{
    return rearranged(p, p.size(), [&](int x, int y) { return IntSize{x, p.height() - 1 - y}; });
}

TEST_F(FilterTest, PassesEveryRotationThroughExactly)
{
    const CGImage picture = distinctPicture(5, 3);
    const std::vector<std::pair<GPUImageRotationMode, CGImage>> rotations{
        {kGPUImageNoRotation, picture},
        {kGPUImageRotateLeft, turnedRight(turnedRight(turnedRight(picture)))},
        {kGPUImageRotateRight, turnedRight(picture)},
        {kGPUImageFlipVertical, upsideDown(picture)},
        {kGPUImageFlipHorizontal, mirrored(picture)},
        // Those with two names flip first.
        {kGPUImageRotateRightFlipVertical, turnedRight(upsideDown(picture))},
        {kGPUImageRotateRightFlipHorizontal, turnedRight(mirrored(picture))},
        {kGPUImageRotate180, upsideDown(mirrored(picture))},
    };
    const auto filter = filterAfterSource();
    const auto consumer = consumerOf(*filter);
    consumer->keepPixels(true);
    for (const auto& [rotation, expected] : rotations) {
        SCOPED_TRACE(rotation);
        m_source->setRotation(rotation);
        m_source->push(picture, second(1));
        EXPECT_TRUE(samePixels(consumer->last().pixels, expected));
        EXPECT_EQ(consumer->last().size, (CGSize{double(expected.width()), double(expected.height())}));
        EXPECT_EQ(consumer->toldRotation(), kGPUImageNoRotation) << "what comes out is upright";
    }
}

TEST_F(FilterTest, PointsTurnAsPicturesDo)
{
    const CGPoint point{0.25, 0.0625};
    const std::vector<std::pair<GPUImageRotationMode, CGPoint>> turned{
        {kGPUImageNoRotation, {0.25, 0.0625}},
        {kGPUImageRotateLeft, {0.9375, 0.25}},
        {kGPUImageRotateRight, {0.0625, 0.75}},
        {kGPUImageFlipVertical, {0.25, 0.9375}},
        {kGPUImageFlipHorizontal, {0.75, 0.0625}},
        {kGPUImageRotateRightFlipVertical, {0.0625, 0.25}},
        {kGPUImageRotateRightFlipHorizontal, {0.9375, 0.75}},
        {kGPUImageRotate180, {0.75, 0.9375}},
    };
    for (const auto& [rotation, expected] : turned)
        EXPECT_EQ(GPUImageFilter::rotatedPoint(point, rotation), expected) << rotation;
    EXPECT_EQ(GPUImageFilter::textureCoordinatesForRotation(static_cast<GPUImageRotationMode>(8)),
              GPUImageFilter::textureCoordinatesForRotation(kGPUImageNoRotation));
}

TEST_F(FilterTest, CountsFallAsTargetsDraw)
{
    for (const bool captured : {false, true}) {
        SCOPED_TRACE(captured ? "kept for a capture" : "not kept");
        const auto filter = filterAfterSource();
        const auto first = consumerOf(*filter);
        const auto second = consumerOf(*filter);
        if (captured)
            filter->useNextFrameForImageCapture();
        m_source->push({4, 4}, {1, 2, 3, 4}, kCMTimeZero);

        // Both hold a count before the first of them works; the filter's own is gone by then.
        const unsigned kept = captured ? 1 : 0;
        EXPECT_EQ(first->last().counts, 2 + kept);
        EXPECT_EQ(second->last().counts, 1 + kept);
        EXPECT_EQ(first->last().framebuffer.lock(), second->last().framebuffer.lock());
        const auto framebuffer = second->last().framebuffer.lock();
        ASSERT_TRUE(framebuffer);
        EXPECT_EQ(framebuffer->framebufferReferenceCount(), kept);
        EXPECT_EQ(filter->framebufferForOutput(), captured ? framebuffer : nullptr);
        EXPECT_EQ(idleFramebuffers(), captured ? 1U : 2U); // the source's frame, and the output where nobody keeps it

        if (captured) {
            EXPECT_TRUE(samePixels(filter->newCGImageFromCurrentlyProcessedOutput(), plainPicture(4, 4, {1, 2, 3, 4})));
        }
        EXPECT_EQ(idleFramebuffers(), 2U);
        m_source->removeAllTargets();
    }
}

TEST_F(FilterTest, WithoutTargetsTheOutputReturnsInTheSamePush)
{
    filterAfterSource();
    const std::size_t living = GPUImageFramebufferCache::livingCount();
    m_source->push({4, 4}, {1, 2, 3, 4}, kCMTimeZero);
    EXPECT_EQ(idleFramebuffers(), 2U);
    EXPECT_EQ(GPUImageFramebufferCache::livingCount(), living + 2);
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
    EXPECT_EQ(consumer->frames().size(), 2U);
}

TEST_F(FilterTest, ForcedSizesHold)
{
    const auto filter = filterAfterSource();
    const auto consumer = consumerOf(*filter);
    const auto sizeOf = [&](IntSize input) {
        m_source->push(input, {1, 2, 3, 4}, kCMTimeZero);
        EXPECT_EQ(consumer->last().framebuffer.lock()->size(), consumer->last().size);
        return consumer->last().size;
    };
    filter->forceProcessingAtSize({20, 10});
    EXPECT_EQ(sizeOf({7, 5}), (CGSize{20, 10}));
    EXPECT_EQ(sizeOf({40, 40}), (CGSize{20, 10}));
    filter->forceProcessingAtSize({});
    EXPECT_EQ(sizeOf({7, 5}), (CGSize{7, 5}));

    filter->forceProcessingAtSizeRespectingAspectRatio({200, 200});
    EXPECT_EQ(sizeOf({400, 100}), (CGSize{200, 50}));
    EXPECT_EQ(sizeOf({4, 8}), (CGSize{100, 200})) << "small ones grow";
    filter->forceProcessingAtSize({20, 10});
    EXPECT_EQ(sizeOf({400, 100}), (CGSize{20, 10})) << "the bound is gone";
    filter->forceProcessingAtSizeRespectingAspectRatio({});
    EXPECT_EQ(sizeOf({7, 5}), (CGSize{7, 5}));
}

TEST_F(FilterTest, AMaximumSizeBoundsWideInputs)
{
    struct Bounded : GPUImageFilter {
        CGSize maximumOutputSize() const override { return {8, 6}; }
    };
    const auto filter = std::make_shared<Bounded>();
    m_source->addTarget(filter);
    m_source->push({16, 4}, {}, kCMTimeZero);
    EXPECT_EQ(filter->sizeOfFBO(), (CGSize{8, 6}));
    m_source->push({7, 40}, {}, kCMTimeZero);
    EXPECT_EQ(filter->sizeOfFBO(), (CGSize{7, 40})) << "only the width is compared";
}

TEST_F(FilterTest, FiltersOfOneProgramKeepTheirOwnValues)
{
    const auto little = std::make_shared<Reddening>(0.1F);
    const auto much = std::make_shared<Reddening>(0.4F);
    m_source->addTarget(little);
    little->addTarget(much);
    const auto between = consumerOf(*little);
    const auto end = consumerOf(*much);
    between->keepPixels(true);
    end->keepPixels(true);
    for (int i = 0; i < 2; ++i) {
        m_source->push({2, 2}, {51, 0, 0, 255}, second(i));
        EXPECT_TRUE(samePixels(between->last().pixels, plainPicture(2, 2, {77, 0, 0, 255}), 1)); // 51 + 25.5
        EXPECT_TRUE(samePixels(end->last().pixels, plainPicture(2, 2, {179, 0, 0, 255}), 2));    // 51 + 25.5 + 102
    }
    // A later value takes the former's place, from the next frame.
    much->setFloat(0.0F, "amount");
    m_source->push({2, 2}, {51, 0, 0, 255}, second(3));
    EXPECT_TRUE(samePixels(end->last().pixels, plainPicture(2, 2, {77, 0, 0, 255}), 1));
}

TEST_F(FilterTest, EveryKindOfUniformArrives)
{
    const auto filter = std::make_shared<GPUImageFilter>(R"(
        precision highp float;
        varying vec2 textureCoordinate;
        uniform int count; uniform vec2 corner; uniform vec2 extent; uniform vec3 three; uniform vec4 four;
        uniform float list[3]; uniform mat3 turn; uniform mat4 shift;
        void main() {
            float sum = float(count) + corner.x + 2.0 * corner.y + 4.0 * extent.x + 8.0 * extent.y;
            vec3 turned = turn * three;
            vec4 shifted = shift * four;
            gl_FragColor = vec4(sum, turned.x + 10.0 * turned.y, list[0] + 2.0 * list[1] + 4.0 * list[2],
                                shifted.x + 100.0 * shifted.y + shifted.z + shifted.w) / 255.0;
        })");
    filter->setInteger(100, "count");
    filter->setPoint({1, 2}, "corner");       // 1 + 4
    filter->setSize({3, 4}, "extent");        // 12 + 32: the sum is 149
    filter->setFloatVec3({1, 2, 3}, "three"); // by columns: x = 1 + 2*2, y = 3*3
    filter->setFloatVec4({1, 0, 0, 1}, "four");
    filter->setFloatArray(std::array{1.0F, 2.0F, 3.0F}, "list"); // 1 + 4 + 12
    onQueue([&] {
        const auto current = GPUImageContext::sharedImageProcessingContext().currentShaderProgram();
        filter->setMatrix3f({{1, 0, 0}, {2, 0, 0}, {0, 3, 0}}, current->uniformIndex("turn"), current);
        filter->setMatrix4f({{7, 1, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 5, 9}}, current->uniformIndex("shift"),
                            current);
    });
    filter->setFloat(1, "noSuchUniform");
    EXPECT_TRUE(samePixels(filter->newCGImageByFilteringCGImage(plainPicture(1, 1, {})),
                           plainPicture(1, 1, {149, 95, 17, 121})));
}

TEST_F(FilterTest, TheBackgroundShowsWhereNothingIsDrawn)
{
    const auto filter = std::make_shared<GPUImageFilter>(R"(
        varying highp vec2 textureCoordinate;
        void main() { if (textureCoordinate.x < 0.5) discard; gl_FragColor = vec4(0.0, 1.0, 0.0, 1.0); })");
    EXPECT_TRUE(samePixels(filter->newCGImageByFilteringCGImage(plainPicture(2, 1, {9, 9, 9, 9})),
                           makePicture(2, 1, [](int x, int) {
                               return x == 0 ? Rgba{0, 0, 0, 0} : Rgba{0, 255, 0, 255};
                           })));
    filter->setBackgroundColorRed(1, 0, 0.2F, 0.4F);
    EXPECT_TRUE(samePixels(filter->newCGImageByFilteringCGImage(plainPicture(2, 1, {9, 9, 9, 9})),
                           makePicture(2, 1, [](int x, int) {
                               return x == 0 ? Rgba{255, 0, 51, 102} : Rgba{0, 255, 0, 255};
                           })));
}

TEST_F(FilterTest, CompletionHearsOfEveryFrameBeforeTheTargets)
{
    const auto filter = filterAfterSource();
    const auto consumer = consumerOf(*filter);
    std::vector<CMTime> times;
    filter->setFrameProcessingCompletionBlock([&](GPUImageOutput& output, const CMTime& time) {
        EXPECT_EQ(&output, filter.get());
        EXPECT_TRUE(output.framebufferForOutput());
        EXPECT_EQ(consumer->frames().size(), times.size());
        times.push_back(time);
    });
    m_source->push({2, 2}, {}, second(4));
    m_source->push({2, 2}, {}, kCMTimeIndefinite);
    EXPECT_THAT(times, testing::ElementsAre(second(4), kCMTimeIndefinite));
    EXPECT_EQ(consumer->last().time, kCMTimeIndefinite);
}

TEST_F(FilterTest, TheEndIsPassedOnOnce)
{
    const auto filter = filterAfterSource();
    const auto consumer = consumerOf(*filter);
    m_source->removeTarget(filter);
    onQueue([&] { filter->endProcessing(); });
    EXPECT_EQ(consumer->endings(), 1);
}

TEST_F(FilterTest, AKeptFrameCanBeReadAgain)
{
    const auto filter = filterAfterSource();
    EXPECT_FALSE(filter->newCGImageFromCurrentlyProcessedOutput()) << "nothing was drawn yet";
    filter->useNextFrameForImageCapture();
    m_source->push({3, 3}, {7, 8, 9, 255}, kCMTimeZero);
    EXPECT_TRUE(samePixels(filter->newCGImageFromCurrentlyProcessedOutput(), plainPicture(3, 3, {7, 8, 9, 255})));
    EXPECT_TRUE(samePixels(filter->newCGImageFromCurrentlyProcessedOutput(), plainPicture(3, 3, {7, 8, 9, 255})));

    // Nor does a third reading take the count of a filter that keeps a frame in the same place by now.
    const auto other = std::make_shared<GPUImageFilter>();
    FrameSource source;
    source.addTarget(other);
    other->useNextFrameForImageCapture();
    source.push({3, 3}, {1, 2, 3, 255}, kCMTimeZero);
    ASSERT_EQ(other->framebufferForOutput(), filter->framebufferForOutput());
    EXPECT_TRUE(filter->newCGImageFromCurrentlyProcessedOutput());
    EXPECT_EQ(other->framebufferForOutput()->framebufferReferenceCount(), 1U);
    EXPECT_TRUE(samePixels(other->newCGImageFromCurrentlyProcessedOutput(), plainPicture(3, 3, {1, 2, 3, 255})));

    // The pool has not been upset by it: frames of two filters at a time stay apart.
    const auto next = std::make_shared<Reddening>(0.2F);
    filter->addTarget(next);
    const auto before = consumerOf(*filter);
    const auto after = consumerOf(*next);
    before->keepPixels(true);
    after->keepPixels(true);
    for (int i = 0; i < 3; ++i) {
        m_source->push({3, 3}, {7, 8, 9, 255}, second(i));
        EXPECT_TRUE(samePixels(before->last().pixels, plainPicture(3, 3, {7, 8, 9, 255})));
        EXPECT_TRUE(samePixels(after->last().pixels, plainPicture(3, 3, {58, 8, 9, 255})));
    }
}

TEST_F(FilterTest, ACaptureWithoutAFrameGivesUpAfterThreeSeconds)
{
    const auto filter = filterAfterSource();
    filter->useNextFrameForImageCapture();
    const auto asked = std::chrono::steady_clock::now();
    EXPECT_FALSE(filter->imageFromCurrentFramebufferWithOrientation(UIImageOrientation::Left));
    const std::chrono::duration<double> waited = std::chrono::steady_clock::now() - asked;
    EXPECT_GE(waited.count(), 2.9);
    EXPECT_LT(waited.count(), 4);

    // The wish stands: the next frame is kept.
    m_source->push({2, 2}, {3, 2, 1, 255}, kCMTimeZero);
    const UIImage image = filter->imageFromCurrentFramebufferWithOrientation(UIImageOrientation::Left);
    EXPECT_TRUE(samePixels(image.cgImage(), plainPicture(2, 2, {3, 2, 1, 255})));
    EXPECT_EQ(image.imageOrientation(), UIImageOrientation::Left);
    EXPECT_EQ(image.scale(), 1);
}

} // namespace
} // namespace lamina::test
