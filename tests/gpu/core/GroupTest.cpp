#include "GraphFixture.h"
#include "gpu/core/GPUImageBuffer.h"
#include "gpu/core/GPUImageFilterGroup.h"

namespace lamina::test {
namespace {

/// Multiplies by a factor.
std::shared_ptr<GPUImageFilter> times(float factor)
{
    auto filter = std::make_shared<GPUImageFilter>(R"(
        varying highp vec2 textureCoordinate; uniform sampler2D inputImageTexture; uniform highp float factor;
        void main() { gl_FragColor = texture2D(inputImageTexture, textureCoordinate) * factor; })");
    filter->setFloat(factor, "factor");
    return filter;
}

/// A fifth, by way of a half and two fifths.
class Fifth : public GPUImageFilterGroup {
public:
    Fifth()
    {
        addFilter(times(0.5F));
        addFilter(times(0.4F));
        filterAtIndex(0)->addTarget(filterAtIndex(1));
        setInitialFilters({filterAtIndex(0)});
        setTerminalFilter(filterAtIndex(1));
    }
};

class GroupTest : public GraphFixture {
protected:
    std::shared_ptr<FrameSource> m_source = std::make_shared<FrameSource>();
};

TEST_F(GroupTest, WorksAsOneFilter)
{
    const auto group = std::make_shared<Fifth>();
    EXPECT_EQ(group->filterCount(), 2U);
    EXPECT_EQ(group->filterAtIndex(2), nullptr);
    EXPECT_TRUE(group->canRender());
    EXPECT_TRUE(samePixels(group->newCGImageByFilteringCGImage(plainPicture(3, 2, {100, 200, 50, 250})),
                           plainPicture(3, 2, {20, 40, 10, 50})));

    m_source->addTarget(group);
    const auto consumer = consumerOf(*group);
    consumer->keepPixels(true);
    EXPECT_THAT(group->targets(), testing::ElementsAre(consumer));
    EXPECT_THAT(group->terminalFilter()->targets(), testing::ElementsAre(consumer));
    int completions = 0;
    group->setFrameProcessingCompletionBlock([&](GPUImageOutput&, const CMTime& time) {
        EXPECT_EQ(time, second(3));
        ++completions;
    });
    m_source->setRotation(kGPUImageRotateRight);
    m_source->push({4, 2}, {100, 200, 50, 250}, second(3));
    EXPECT_TRUE(samePixels(consumer->last().pixels, plainPicture(2, 4, {20, 40, 10, 50})));
    EXPECT_EQ(completions, 1);
    group->removeTarget(consumer);
    EXPECT_EQ(consumer->endings(), 1);
    EXPECT_TRUE(group->targets().empty());
}

TEST_F(GroupTest, ForcedSizesReachEveryMember)
{
    const auto group = std::make_shared<Fifth>();
    m_source->addTarget(group);
    const auto between = consumerOf(*group->filterAtIndex(0));
    const auto end = consumerOf(*group);
    const auto push = [&] { m_source->push({40, 10}, {1, 2, 3, 4}, second(1)); };
    group->forceProcessingAtSize({6, 5});
    push();
    EXPECT_EQ(between->last().size, (CGSize{6, 5}));
    EXPECT_EQ(end->last().size, (CGSize{6, 5}));
    group->forceProcessingAtSizeRespectingAspectRatio({8, 8});
    push();
    EXPECT_EQ(between->last().size, (CGSize{8, 2}));
    EXPECT_EQ(end->last().size, (CGSize{8, 2}));
    group->forceProcessingAtSizeRespectingAspectRatio({});
    push();
    EXPECT_EQ(end->last().size, (CGSize{40, 10}));
}

TEST_F(GroupTest, SeveralInitialFiltersShareTheInput)
{
    const auto group = std::make_shared<GPUImageFilterGroup>();
    const auto first = times(0.5F);
    const auto other = times(0.25F);
    group->addFilter(first);
    group->addFilter(other);
    group->setInitialFilters({first, other});
    group->setTerminalFilter(first);
    const auto ofFirst = consumerOf(*group);
    const auto ofOther = consumerOf(*other);
    m_source->addTarget(group);
    m_source->push({2, 2}, {}, second(1));
    EXPECT_EQ(ofFirst->frames().size(), 1U);
    EXPECT_EQ(ofOther->frames().size(), 1U);
    EXPECT_EQ(idleFramebuffers(), GPUImageFramebufferCache::livingCount());

    group->setInputFilterToIgnoreForUpdates(other);
    m_source->push({2, 2}, {}, second(2));
    EXPECT_EQ(ofFirst->frames().size(), 2U);
    EXPECT_EQ(ofOther->frames().size(), 1U);

    onQueue([&] { group->endProcessing(); });
    onQueue([&] { group->endProcessing(); });
    EXPECT_EQ(ofFirst->endings(), 1);
    EXPECT_EQ(ofOther->endings(), 1);
}

TEST_F(GroupTest, NothingHappensUntilThereAreFilters)
{
    const auto group = std::make_shared<GPUImageFilterGroup>();
    const auto consumer = consumerOf(*group);
    m_source->addTarget(group);
    m_source->push({2, 2}, {}, second(1));
    EXPECT_TRUE(consumer->frames().empty());
    EXPECT_TRUE(group->targets().empty());
    group->useNextFrameForImageCapture();
    EXPECT_FALSE(group->newCGImageFromCurrentlyProcessedOutput());
    EXPECT_FALSE(group->canRender());
}

class BufferTest : public GraphFixture {
protected:
    BufferTest()
    {
        m_source->addTarget(m_buffer);
        m_end = consumerOf(*m_buffer);
        m_end->keepPixels(true);
    }
    /// The number of the frame that comes out when frame `number` goes in.
    int push(int number)
    {
        m_source->push({2, 2}, {static_cast<std::uint8_t>(number), 0, 0, 255}, second(number));
        const CGImage& pixels = m_end->last().pixels;
        return pixels ? pixelAt(pixels, 1, 1)[0] : -1;
    }
    std::vector<int> pushAll(int from, int to)
    {
        std::vector<int> out;
        for (int number = from; number <= to; ++number)
            out.push_back(push(number));
        return out;
    }

    std::shared_ptr<FrameSource> m_source = std::make_shared<FrameSource>();
    std::shared_ptr<GPUImageBuffer> m_buffer = std::make_shared<GPUImageBuffer>();
    std::shared_ptr<CountingConsumer> m_end;
};

TEST_F(BufferTest, DelaysFramesByItsSize)
{
    EXPECT_EQ(m_buffer->bufferSize(), 1U);
    m_buffer->setBufferSize(2);
    m_buffer->setBufferSize(0);
    EXPECT_EQ(m_buffer->bufferSize(), 2U);
    EXPECT_THAT(pushAll(0, 5), testing::ElementsAre(0, 1, 0, 1, 2, 3))
        << "while it fills, frames go on at once and again";
    EXPECT_EQ(m_end->last().time, second(5)) << "the time is that of the frame that came in";

    m_buffer->setBufferSize(1);
    EXPECT_THAT(pushAll(6, 8), testing::ElementsAre(5, 6, 7)) << "the oldest went";
    EXPECT_EQ(GPUImageFramebufferCache::livingCount() - idleFramebuffers(), 1U);

    m_source->removeAllTargets();
    m_buffer.reset();
    EXPECT_EQ(GPUImageFramebufferCache::livingCount(), idleFramebuffers());
}

TEST_F(BufferTest, LeavesTurningToItsTargets)
{
    m_source->setRotation(kGPUImageRotateLeft);
    push(1);
    EXPECT_EQ(m_end->toldRotation(), kGPUImageRotateLeft);
}

} // namespace
} // namespace lamina::test
