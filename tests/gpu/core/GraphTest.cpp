#include "GraphFixture.h"

#include "platform/base/CGGeometry.h"

#include <utility>
#include <vector>

namespace lamina::test {
namespace {

class GraphTest : public GraphFixture {
protected:
    void push(int number = 0) { m_source->push(IntSize{4, 2}, {10, 20, 30, 255}, second(number)); }
};

TEST_F(GraphTest, ATargetIsAddedOnceAndItsRemovalFreesTheSlotAndEndsIt)
{
    const auto consumer = consumerOf(*m_source);
    const auto other = consumerOf(*m_source);
    m_source->addTarget(consumer, 1);
    m_source->setRotation(kGPUImageRotateLeft);
    push();
    for (int i = 0; i < 2; ++i)
        m_source->removeTarget(consumer);
    EXPECT_EQ(consumer->toldSize(), CGSize{});
    EXPECT_EQ(consumer->toldRotation(), kGPUImageNoRotation);
    EXPECT_EQ(consumer->endings(), 1);
    push();
    ASSERT_EQ(consumer->frames().size(), 1U);
    EXPECT_EQ(consumer->last().slot, 0);
    EXPECT_EQ(other->frames().size(), 2U);
    EXPECT_EQ(other->endings(), 0);
}

TEST_F(GraphTest, RemovingAllFreesTheSlotsButEndsNobody)
{
    for (const bool byItsEnd : {false, true}) {
        const auto consumer = consumerOf(*m_source);
        push();
        if (byItsEnd)
            m_source.reset();
        else
            m_source->removeAllTargets();
        EXPECT_EQ(consumer->toldSize(), CGSize{});
        EXPECT_EQ(consumer->endings(), 0);
    }
}

TEST_F(GraphTest, TargetsAreServedInTheOrderOfAddingWhateverTheirSlots)
{
    const auto filter = std::make_shared<GPUImageFilter>();
    m_source->addTarget(filter);
    std::vector<std::string> log;
    for (const auto& [name, slot] : {std::pair{"a", 2}, {"b", 0}, {"c", 1}}) {
        const auto consumer = std::make_shared<CountingConsumer>();
        consumer->logTo(log, name);
        filter->addTarget(consumer, slot);
    }
    push();
    EXPECT_THAT(log, testing::ElementsAre("a2", "b0", "c1"));
}

TEST_F(GraphTest, AnIgnoredTargetStaysInTheListWithoutFrames)
{
    const auto filter = std::make_shared<GPUImageFilter>();
    m_source->addTarget(filter);
    const auto ignored = std::make_shared<CountingConsumer>();
    ignored->setShouldIgnoreUpdates(true);
    filter->addTarget(ignored);
    const auto served = consumerOf(*filter);
    push();
    EXPECT_TRUE(ignored->frames().empty());
    EXPECT_EQ(served->frames().size(), 1U);
    EXPECT_EQ(idleFramebuffers(), 2U) << "nobody holds a count for the ignored one";

    filter->removeTarget(ignored);
    ignored->setShouldIgnoreUpdates(false);
    ignored->setEnabled(false); // filters don't ask, this source does
    filter->addTarget(ignored);
    m_source->addTarget(ignored);
    push();
    EXPECT_EQ(ignored->frames().size(), 1U);
}

TEST_F(GraphTest, OneChannelIsToldWhereItIsSentAndWouldDoForAll)
{
    m_source->setMonochrome(true);
    const auto gray = consumerOf(*m_source);
    push();
    EXPECT_FALSE(gray->toldMonochrome()) << "it wants all";
    m_source->removeTarget(gray);
    gray->setWantsMonochrome(true);
    m_source->addTarget(gray);
    EXPECT_FALSE(m_source->allTargetsWantMonochromeData()) << "forgotten only when all are removed";
    m_source->removeAllTargets();
    m_source->addTarget(gray);
    push();
    EXPECT_TRUE(gray->toldMonochrome());
    m_source->setMonochrome(false);
    push();
    EXPECT_FALSE(gray->toldMonochrome()) << "all channels are sent";
}

} // namespace
} // namespace lamina::test
