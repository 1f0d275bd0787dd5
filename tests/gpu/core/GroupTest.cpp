#include "GraphFixture.h"
#include "TestPictures.h"
#include "gpu/core/GPUImageBuffer.h"
#include "gpu/core/GPUImageFilterGroup.h"
#include "gpu/core/GPUImageTwoInputFilter.h"

#include <cstdint>

namespace lamina::test {
namespace {

/// A fifth, by way of a half and two fifths.
class Fifth : public GPUImageFilterGroup {
public:
    Fifth()
    {
        addFilter(multiplying(0.5F));
        addFilter(multiplying(0.4F));
        filterAtIndex(0)->addTarget(filterAtIndex(1));
        setInitialFilters({filterAtIndex(0)});
        setTerminalFilter(filterAtIndex(1));
    }
};

using GroupTest = GraphFixture;

TEST_F(GroupTest, WorksAsOneFilter)
{
    const auto group = std::make_shared<Fifth>();
    EXPECT_EQ(group->filterAtIndex(2), nullptr);
    EXPECT_TRUE(imagesMatch(group->newCGImageByFilteringCGImage(solidPicture(3, 2, {100, 200, 50, 250})),
                            solidPicture(3, 2, {20, 40, 10, 50})));
    m_source->addTarget(group);
    const auto consumer = consumerOf(*group);
    const auto between = consumerOf(*group->filterAtIndex(0));
    int completions = 0;
    group->setFrameProcessingCompletionBlock([&](GPUImageOutput&, const CMTime&) { ++completions; });
    const auto expectSize = [&](CGSize size) {
        m_source->push({4, 2}, {}, second(1));
        EXPECT_EQ(between->last().size, size);
        EXPECT_EQ(consumer->last().size, size);
    };
    m_source->setRotation(kGPUImageRotateRight);
    expectSize({2, 4});
    m_source->setRotation(kGPUImageNoRotation);
    group->forceProcessingAtSize({6, 5});
    expectSize({6, 5});
    group->forceProcessingAtSizeRespectingAspectRatio({8, 8});
    expectSize({8, 4});
    EXPECT_EQ(completions, 3);
    EXPECT_THAT(group->targets(), testing::ElementsAre(consumer));
    group->removeTarget(consumer);
    EXPECT_TRUE(group->targets().empty());
}

TEST_F(GroupTest, SeveralInitialFiltersShareTheInput)
{
    const auto group = std::make_shared<GPUImageFilterGroup>();
    const auto first = multiplying(0.5F);
    const auto other = multiplying(0.25F);
    group->setInitialFilters({first, other});
    group->setTerminalFilter(first);
    const auto ofFirst = consumerOf(*group);
    const auto ofOther = consumerOf(*other);
    m_source->addTarget(group);
    m_source->push({2, 2}, {}, second(1));
    EXPECT_EQ(idleFramebuffers(), GPUImageFramebufferCache::livingCount());
    group->setInputFilterToIgnoreForUpdates(other);
    m_source->push({2, 2}, {}, second(2));
    EXPECT_EQ(ofFirst->frames().size(), 2U);
    EXPECT_EQ(ofOther->frames().size(), 1U);
    for (int i = 0; i < 2; ++i)
        onQueue([&] { group->endProcessing(); });
    EXPECT_EQ(ofFirst->endings(), 1);
    EXPECT_EQ(ofOther->endings(), 1);
    m_source->push({2, 2}, {}, second(3));
    onQueue([&] { group->endProcessing(); });
    EXPECT_EQ(ofFirst->endings(), 2) << "it has had a frame since";
    EXPECT_EQ(ofOther->endings(), 1);
}

TEST_F(GroupTest, AStillIsKeptBehindAGroupAndABuffer)
{
    auto still = std::make_shared<FrameSource>();
    const auto buffer = std::make_shared<GPUImageBuffer>();
    const auto group = std::make_shared<Fifth>();
    const auto blend = std::make_shared<GPUImageTwoInputFilter>(R"(
        varying highp vec2 textureCoordinate2; uniform sampler2D inputImageTexture2;
        void main() { gl_FragColor = texture2D(inputImageTexture2, textureCoordinate2); })");
    still->addTarget(buffer);
    buffer->addTarget(group);
    m_source->addTarget(blend);
    group->addTarget(blend);
    const auto end = consumerOf(*blend);
    still->push({2, 2}, {100, 100, 100, 100}, kCMTimeIndefinite);
    for (int i = 1; i <= 3; ++i) {
        m_source->push({2, 2}, {}, second(i));
        EXPECT_EQ(pixelAt(end->last().pixels, 0, 0)[0], 20) << i;
    }
    EXPECT_EQ(GPUImageFramebufferCache::livingCount() - idleFramebuffers(), 2U) << "the buffer's and the blend's";
    still.reset();
    group->removeAllTargets();
    EXPECT_EQ(GPUImageFramebufferCache::livingCount(), idleFramebuffers());
}

TEST_F(GroupTest, NothingHappensUntilThereAreFilters)
{
    const auto group = std::make_shared<GPUImageFilterGroup>();
    consumerOf(*group);
    m_source->addTarget(group);
    m_source->push({2, 2}, {}, second(1));
    EXPECT_TRUE(group->targets().empty());
    EXPECT_FALSE(group->newCGImageByFilteringCGImage(chartPicture(2, 2)));
    EXPECT_FALSE(group->canRender());
}

TEST_F(GroupTest, ABufferDelaysFramesByItsSize)
{
    auto buffer = std::make_shared<GPUImageBuffer>();
    m_source->addTarget(buffer);
    const auto end = consumerOf(*buffer);
    // The numbers of the frames that come out as these go in.
    const auto pushAll = [&](int from, int to) {
        std::vector<int> out;
        for (int number = from; number <= to; ++number) {
            m_source->push({2, 2}, {static_cast<std::uint8_t>(number), 0, 0, 255}, second(number));
            out.push_back(pixelAt(end->last().pixels, 1, 1)[0]);
        }
        return out;
    };
    m_source->setRotation(kGPUImageRotateLeft);
    buffer->setBufferSize(2);
    buffer->setBufferSize(0);
    EXPECT_THAT(pushAll(0, 5), testing::ElementsAre(0, 1, 0, 1, 2, 3)) << "while it fills, frames go on at once too";
    EXPECT_EQ(end->last().time, second(5)) << "the time is that of the frame that came in";
    EXPECT_EQ(end->toldRotation(), kGPUImageRotateLeft) << "turning is left to the targets";
    buffer->setBufferSize(1);
    EXPECT_THAT(pushAll(6, 8), testing::ElementsAre(5, 6, 7)) << "the oldest went";
    EXPECT_EQ(GPUImageFramebufferCache::livingCount() - idleFramebuffers(), 1U);
    m_source->removeAllTargets();
    buffer.reset();
    EXPECT_EQ(GPUImageFramebufferCache::livingCount(), idleFramebuffers());
}

} // namespace
} // namespace lamina::test
