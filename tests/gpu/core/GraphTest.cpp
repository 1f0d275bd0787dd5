#include "GraphFixture.h"

#include "gpu/core/GPUTextureOptions.h"
#include "platform/base/CGGeometry.h"

#include <utility>

namespace lamina::test {
namespace {

class GraphTest : public GraphFixture {
protected:
    std::shared_ptr<FrameSource> m_source = std::make_shared<FrameSource>();
    void push(int number = 0) { m_source->push(IntSize{4, 2}, {10, 20, 30, 255}, second(number)); }
};

TEST_F(GraphTest, ATargetIsAddedOnceAndItsRemovalFreesTheSlotAndEndsIt)
{
    const auto consumer = consumerOf(*m_source);
    const auto other = consumerOf(*m_source);
    m_source->addTarget(consumer, 1);
    EXPECT_EQ(m_source->targets().size(), 2U);
    m_source->setRotation(kGPUImageRotateLeft);
    push();
    EXPECT_EQ(consumer->last().slot, 0);
    for (int i = 0; i < 2; ++i)
        m_source->removeTarget(consumer);
    EXPECT_EQ(consumer->toldSize(), CGSize{});
    EXPECT_EQ(consumer->toldRotation(), kGPUImageNoRotation);
    EXPECT_EQ(consumer->endings(), 1);
    push();
    EXPECT_EQ(consumer->frames().size(), 1U);
    EXPECT_EQ(other->frames().size(), 2U);
    EXPECT_EQ(other->endings(), 0);
}

TEST_F(GraphTest, RemovingAllFreesTheSlotsButEndsNobody)
{
    for (const bool byItsEnd : {false, true}) {
        const auto consumers = {consumerOf(*m_source), consumerOf(*m_source)};
        push();
        if (byItsEnd)
            m_source.reset();
        else
            m_source->removeAllTargets();
        for (const auto& consumer : consumers) {
            EXPECT_EQ(consumer->toldSize(), CGSize{});
            EXPECT_EQ(consumer->endings(), 0);
        }
    }
}

TEST_F(GraphTest, TargetsAreServedInTheOrderOfAddingWhateverTheirSlots)
{
    const auto filter = std::make_shared<GPUImageFilter>();
    m_source->addTarget(filter);
    std::vector<std::string> log;
    std::vector<std::shared_ptr<CountingConsumer>> consumers;
    for (const auto& [name, slot] : {std::pair{"a", 2}, {"b", 0}, {"c", 1}}) {
        consumers.push_back(std::make_shared<CountingConsumer>());
        consumers.back()->logTo(log, name);
        filter->addTarget(consumers.back(), slot);
    }
    push();
    EXPECT_THAT(log, testing::ElementsAre("a", "b", "c"));
    EXPECT_EQ(consumers[0]->last().slot, 2);
    EXPECT_EQ(consumers[2]->last().slot, 1);
}

TEST_F(GraphTest, AnIgnoredTargetStaysInTheListWithoutFrames)
{
    const auto filter = std::make_shared<GPUImageFilter>();
    m_source->addTarget(filter);
    const auto ignored = std::make_shared<CountingConsumer>();
    ignored->setShouldIgnoreUpdates(true);
    filter->addTarget(ignored);
    EXPECT_EQ(filter->targetToIgnoreForUpdates(), ignored);
    EXPECT_EQ(filter->targets().size(), 1U);
    const auto served = consumerOf(*filter);
    push();
    EXPECT_TRUE(ignored->frames().empty());
    EXPECT_EQ(served->frames().size(), 1U);
    EXPECT_EQ(idleFramebuffers(), 2U) << "nobody holds a count for the ignored one";

    filter->removeTarget(ignored);
    ignored->setShouldIgnoreUpdates(false);
    filter->addTarget(ignored);
    push();
    EXPECT_EQ(ignored->frames().size(), 1U);
}

TEST_F(GraphTest, KnowsWhetherOneChannelWouldDoForAll)
{
    const auto gray = std::make_shared<CountingConsumer>();
    gray->setWantsMonochrome(true);
    EXPECT_TRUE(m_source->allTargetsWantMonochromeData());
    m_source->addTarget(gray);
    EXPECT_TRUE(m_source->allTargetsWantMonochromeData());
    consumerOf(*m_source);
    EXPECT_FALSE(m_source->allTargetsWantMonochromeData());
    m_source->removeAllTargets();
    m_source->removeTarget(consumerOf(*m_source));
    EXPECT_FALSE(m_source->allTargetsWantMonochromeData()) << "forgotten only when all are removed";
    m_source->removeAllTargets();
    EXPECT_TRUE(m_source->allTargetsWantMonochromeData());
}

TEST_F(GraphTest, TextureOptionsComeWithTheNextFrame)
{
    const auto filter = std::make_shared<GPUImageFilter>();
    m_source->addTarget(filter);
    const auto consumer = consumerOf(*filter);
    GPUTextureOptions options = filter->outputTextureOptions();
    options.wrapS = GL_REPEAT;
    options.minFilter = GL_NEAREST;
    filter->setOutputTextureOptions(options);
    push();
    EXPECT_EQ(consumer->last().framebuffer.lock()->textureOptions(), options);
}

} // namespace
} // namespace lamina::test
