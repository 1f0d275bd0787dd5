#include "GLCalls.h"
#include "GraphFixture.h"
#include "LogCapture.h"
#include "TestPictures.h"
#include "gpu/endpoints/GPUImageUIElement.h"
#include "platform/base/Clock.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/UIColor.h"

#include <cstddef>
#include <thread>

namespace lamina::test {
namespace {

/// A view of 3 x 2 points at two pixels a point, in it one of a point, half red.
class UIElementTest : public GraphFixture {
protected:
    UIElementTest()
    {
        m_part->setBackgroundColor(UIColor{1, 0, 0, 0.5});
        m_view->addSubview(m_part);
        m_element = std::make_shared<GPUImageUIElement>(m_view);
        m_element->setContentsScale(2);
        const auto filter = multiplying(1);
        m_element->addTarget(filter);
        filter->addTarget(m_consumer);
    }

    const CountingConsumer::Frame& last() const { return m_consumer->last(); }
    std::size_t frames() const { return m_consumer->frames().size(); }
    /// From a thread of its own, as far as it goes without the main thread.
    void updateElsewhere(int time)
    {
        std::thread([&] { m_element->updateWithTimestamp(second(time)); }).join();
        onQueue([] {});
    }

    const std::shared_ptr<UIView> m_view = std::make_shared<UIView>(CGRect(5, 5, 3, 2));
    const std::shared_ptr<UIView> m_part = std::make_shared<UIView>(CGRect(1, 0, 1, 1));
    const std::shared_ptr<CountingConsumer> m_consumer = std::make_shared<CountingConsumer>();
    std::shared_ptr<GPUImageUIElement> m_element;
};

TEST_F(UIElementTest, DrawsUprightInEitherAlphaForm)
{
    for (const auto& [form, red] : {std::pair{AlphaForm::Premultiplied, 128}, std::pair{AlphaForm::Straight, 255}}) {
        m_element->setAlphaForm(form);
        m_element->update();
        EXPECT_TRUE(last().time.isIndefinite());
        const auto wanted = [&](int x, int y) {
            return (x == 2 || x == 3) && y < 2 ? Rgba{static_cast<std::uint8_t>(red), 0, 0, 128} : Rgba{};
        };
        EXPECT_TRUE(imagesMatch(last().pixels, makePicture(6, 4, wanted, true), 1));
    }
}

TEST_F(UIElementTest, EveryUpdateIsSeenAndOnlyChangesGoUp)
{
    GLCalls before;
    for (int i = 0; i < 1000; ++i) {
        m_part->setBackgroundColor(UIColor{i % 256 / 255.0, i / 256 / 255.0, 0, 1});
        m_element->updateWithTimestamp(second(i));
        const Rgba seen = pixelAt(last().pixels, 2, 0);
        ASSERT_EQ(seen[0] + 256 * seen[1], i);
        ASSERT_EQ(last().time, second(i));
        if (i == 0)
            before = glCallsSoFar();
    }
    m_element->update();
    EXPECT_EQ((glCallsSoFar() - before).objectsMade(), 0);
    EXPECT_EQ((glCallsSoFar() - before).fills, 999);
    EXPECT_EQ(frames(), 1001U);
}

TEST_F(UIElementTest, TimesFollowTheSharedClock)
{
    const auto clock = std::make_shared<ManualClock>(100);
    Clock::setShared(clock);
    for (const int wanted : {0, 150, 300}) { // 600 a second
        m_element->updateUsingCurrentTime();
        EXPECT_EQ(last().time, CMTime::make(wanted, 600));
        clock->advance(0.25);
    }
    Clock::setShared(nullptr);
}

TEST_F(UIElementTest, OtherThreadsWaitForTheMainOneOnlyWithChanges)
{
    m_element->update();
    updateElsewhere(1);
    ASSERT_EQ(frames(), 2U) << "nothing has changed";
    m_part->setHidden(true);
    updateElsewhere(2);
    updateElsewhere(3);
    EXPECT_EQ(frames(), 2U);
    DispatchQueue::main().drain();
    ASSERT_EQ(frames(), 4U);
    EXPECT_EQ(last().time, second(3));
    EXPECT_EQ(pixelAt(last().pixels, 2, 0), Rgba{});
    updateElsewhere(4);
    EXPECT_EQ(frames(), 5U);
}

TEST_F(UIElementTest, WithoutAreaNothingIsPushedAndTheLogTellsItOnce)
{
    const LogCapture log;
    for (const CGSize none : {CGSize{}, CGSize{1e6, 2}}) {
        m_view->setBounds({{}, none});
        m_element->update();
        m_element->update();
    }
    EXPECT_EQ(frames(), 0U);
    EXPECT_EQ(log.text(), "view element: the layer has no area\n");
    m_view->setBounds(CGRect(0, 0, 1, 2));
    m_element->update();
    EXPECT_EQ(last().size, (CGSize{2, 4}));
}

} // namespace
} // namespace lamina::test
