#include "GLCalls.h"
#include "GraphFixture.h"
#include "LogCapture.h"
#include "TestPictures.h"
#include "gpu/endpoints/GPUImageUIElement.h"
#include "platform/base/Clock.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/UIColor.h"
#include "platform/base/UIScreen.h"

#include <cstddef>
#include <thread>

namespace lamina::test {
namespace {

constexpr UIColor kHalfRed{1, 0, 0, 0.5};

/// Tells whether it goes on the main thread.
class TellingView : public UIView {
public:
    explicit TellingView(bool& wentOnMain)
        : UIView({0, 0, 1, 1})
        , m_wentOnMain(wentOnMain)
    {
    }
    ~TellingView() override { m_wentOnMain = DispatchQueue::main().isCurrent(); }

private:
    bool& m_wentOnMain;
};

class UIElementTest : public GraphFixture {
protected:
    UIElementTest()
    {
        UIScreen::setMain({{375, 667}, 2});
        m_view->setBackgroundColor(UIColor{0, 0, 1, 1});
        m_part->setBackgroundColor(kHalfRed);
        m_view->addSubview(m_part);
    }
    ~UIElementTest() override { UIScreen::setMain({}); }

    /// What the last update has brought.
    const CountingConsumer::Frame& last() const { return m_consumer->last(); }
    std::size_t frames() const { return m_consumer->frames().size(); }
    /// Adds the targets.
    void watch(GPUImageUIElement& element)
    {
        const auto filter = multiplying(1);
        element.addTarget(filter);
        filter->addTarget(m_consumer);
    }
    /// From a thread of its own, as far as it goes without the main thread.
    static void updateElsewhere(GPUImageUIElement& element, int time)
    {
        std::thread([&] { element.updateWithTimestamp(second(time)); }).join();
        onQueue([] {});
    }

    const std::shared_ptr<UIView> m_view = std::make_shared<UIView>(CGRect(5, 5, 3, 2));
    const std::shared_ptr<UIView> m_part = std::make_shared<UIView>(CGRect(1, 0, 1, 1));
    const std::shared_ptr<CountingConsumer> m_consumer = std::make_shared<CountingConsumer>();
};

TEST_F(UIElementTest, DrawsUprightAtItsScaleInEitherAlphaForm)
{
    m_view->setBackgroundColor({});
    const auto element = std::make_shared<GPUImageUIElement>(m_view);
    watch(*element);
    EXPECT_EQ(element->layerSizeInPixels(), (CGSize{6, 4}));
    for (const auto& [form, red] : {std::pair{AlphaForm::Premultiplied, 128}, std::pair{AlphaForm::Straight, 255}}) {
        element->setAlphaForm(form);
        element->update();
        EXPECT_EQ(last().size, (CGSize{6, 4}));
        EXPECT_TRUE(last().time.isIndefinite());
        EXPECT_TRUE(imagesMatch(last().pixels,
                                makePicture(
                                    6, 4,
                                    [&](int x, int y) {
                                        const bool inPart = (x == 2 || x == 3) && y < 2;
                                        return inPart ? Rgba{static_cast<std::uint8_t>(red), 0, 0, 128} : Rgba{};
                                    },
                                    true),
                                1));
    }
    element->setContentsScale(1.5);
    element->update();
    EXPECT_EQ(last().size, (CGSize{4, 3})) << "cut to whole pixels";

    GPUImageUIElement ofLayer(m_view->layer().shared_from_this());
    EXPECT_EQ(ofLayer.layerSizeInPixels(), (CGSize{3, 2}));
}

TEST_F(UIElementTest, EveryUpdateIsSeenAndOnlyChangesGoUp)
{
    const auto element = std::make_shared<GPUImageUIElement>(m_view);
    watch(*element);
    const auto update = [&](int number) {
        m_part->setBackgroundColor(UIColor{number % 256 / 255.0, number / 256 / 255.0, 0, 1});
        element->updateWithTimestamp(second(number));
    };
    update(0);
    update(1);
    GLCalls before = glCallsSoFar();
    for (int i = 0; i < 1000; ++i) {
        update(i);
        const Rgba seen = pixelAt(last().pixels, 2, 0);
        ASSERT_EQ(seen[0] + 256 * seen[1], i);
        ASSERT_EQ(last().time, second(i));
    }
    EXPECT_EQ((glCallsSoFar() - before).objectsMade(), 0);
    EXPECT_EQ((glCallsSoFar() - before).fills, 1000);

    before = glCallsSoFar();
    for (int i = 0; i < 5; ++i)
        element->update();
    EXPECT_EQ(frames(), 1007U);
    EXPECT_EQ((glCallsSoFar() - before).fills, 0);
    m_view->setBounds(CGRect(0, 0, 1, 1));
    element->update();
    EXPECT_EQ(last().size, (CGSize{2, 2}));
}

TEST_F(UIElementTest, TimesFollowTheSharedClock)
{
    const auto clock = std::make_shared<ManualClock>(100);
    Clock::setShared(clock);
    const auto element = std::make_shared<GPUImageUIElement>(m_view);
    watch(*element);
    EXPECT_FALSE(element->time().isValid());
    for (const int wanted : {0, 150, 300}) { // 600 a second
        element->updateUsingCurrentTime();
        EXPECT_EQ(last().time, CMTime::make(wanted, 600));
        EXPECT_EQ(element->actualTimeOfLastUpdate(), clock->now());
        clock->advance(0.25);
    }
    Clock::setShared(nullptr);
}

TEST_F(UIElementTest, OtherThreadsWaitForTheMainOneOnlyWithChanges)
{
    auto element = std::make_shared<GPUImageUIElement>(m_view);
    watch(*element);
    updateElsewhere(*element, 1);
    ASSERT_EQ(frames(), 1U) << "nothing has changed";
    m_part->setHidden(true);
    updateElsewhere(*element, 2);
    updateElsewhere(*element, 3);
    EXPECT_EQ(frames(), 1U);
    DispatchQueue::main().drain();
    ASSERT_EQ(frames(), 3U);
    EXPECT_EQ(last().time, second(3));
    EXPECT_EQ(pixelAt(last().pixels, 2, 0), (Rgba{0, 0, 255, 255}));
    updateElsewhere(*element, 4);
    EXPECT_EQ(frames(), 4U);

    // The last owner may be another thread; its views still go on this one.
    bool wentOnMain = false;
    element = std::make_shared<GPUImageUIElement>(std::make_shared<TellingView>(wentOnMain));
    std::thread([last = std::move(element)] {}).join();
    DispatchQueue::main().drain();
    EXPECT_TRUE(wentOnMain);
}

TEST_F(UIElementTest, WithoutAreaNothingIsPushedAndTheLogTellsItOnce)
{
    const LogCapture log;
    m_view->setBounds({});
    const auto element = std::make_shared<GPUImageUIElement>(m_view);
    watch(*element);
    for (int i = 0; i < 3; ++i)
        element->update();
    EXPECT_EQ(frames(), 0U);
    EXPECT_EQ(log.text(), "view element: the layer has no area\n");
    m_view->setBounds(CGRect(0, 0, 1e6, 2));
    element->update();
    EXPECT_EQ(frames(), 0U);
    m_view->setBounds(CGRect(0, 0, 3, 2));
    element->update();
    EXPECT_EQ(frames(), 1U);
}

} // namespace
} // namespace lamina::test
