#include "TouchBench.h"

#include "platform/view/UIControl.h"
#include "platform/view/UILongPressGestureRecognizer.h"
#include "platform/view/UIPanGestureRecognizer.h"
#include "platform/view/UIPinchGestureRecognizer.h"
#include "platform/view/UITapGestureRecognizer.h"
#include "platform/view/UITouch.h"

#include <limits>

namespace lamina {
namespace {

/// Logs what touches tell it.
class HeardView : public UIView {
public:
    using UIView::UIView;
    void touchesBegan(const std::vector<UITouch*>& touches) override { note('b', touches); }
    void touchesMoved(const std::vector<UITouch*>& touches) override { note('m', touches); }
    void touchesEnded(const std::vector<UITouch*>& touches) override { note('e', touches); }
    void touchesCancelled(const std::vector<UITouch*>& touches) override { note('c', touches); }

    std::string log;

private:
    void note(char what, const std::vector<UITouch*>& touches)
    {
        log += what;
        for (const UITouch* touch : touches)
            log += std::to_string(touch->id);
    }
};

class GestureExclusivityTest : public test::TouchBench {
protected:
    std::shared_ptr<UIView> child = addView(*root, {100, 100, 200, 200});
};

TEST_F(GestureExclusivityTest, OneGestureAtATime)
{
    const auto pan = attach<UIPanGestureRecognizer>(*root, "pan");
    const auto tapping = attach<UITapGestureRecognizer>(*root, "tap");
    const auto pinch = attach<UIPinchGestureRecognizer>(*root, "pinch");
    tap(50, 50);
    EXPECT_EQ(heard(), "tap:ended ");
    down(1, 50, 50);
    move(1, 80, 50);
    EXPECT_EQ(tapping->state(), UIGestureRecognizerState::Failed);
    down(2, 150, 50); // the pan is under way, the pinch comes too late
    moveBoth({80, 50}, {250, 50});
    up(1, 80, 50);
    up(2, 250, 50);
    EXPECT_EQ(log.find("pinch"), std::string::npos);
    heard();
    down(1, 100, 50); // spreading fingers are a pinch although each moves far enough for a pan
    down(2, 200, 50);
    moveBoth({70, 50}, {230, 50});
    moveBoth({70, 90}, {230, 90});
    up(1, 70, 90);
    up(2, 230, 90);
    EXPECT_EQ(heard(), "pinch:began pinch:changed pinch:ended ");
}

TEST_F(GestureExclusivityTest, ChildrenGoBeforeAncestors)
{
    const auto outer = attach<UIPanGestureRecognizer>(*root, "outer");
    const auto inner = attach<UIPanGestureRecognizer>(*child, "inner");
    down(1, 200, 200);
    move(1, 230, 200);
    up(1, 230, 200);
    EXPECT_EQ(heard(), "inner:began inner:ended ");
    down(1, 20, 20);
    move(1, 50, 20);
    up(1, 50, 20);
    EXPECT_EQ(heard(), "outer:began outer:ended ");
    // A handle that takes its finger at once keeps it from the pans around it.
    const auto handle = attach<UILongPressGestureRecognizer>(*addView(*child, {0, 0, 36, 36}), "handle");
    handle->setMinimumPressDuration(0);
    down(1, 110, 110);
    move(1, 150, 150);
    up(1, 150, 150);
    EXPECT_EQ(heard(), "handle:began handle:changed handle:ended ");
}

TEST_F(GestureExclusivityTest, EitherDelegateLetsBothGo)
{
    const auto outer = attach<UIPanGestureRecognizer>(*root, "outer");
    const auto inner = attach<UIPanGestureRecognizer>(*child, "inner");
    const auto rules = std::make_shared<test::Rules>();
    rules->together = true;
    for (const auto& willing : {outer, inner}) {
        willing->setDelegate(rules);
        down(1, 200, 200);
        move(1, 230, 200);
        up(1, 230, 200);
        EXPECT_EQ(heard(), "inner:began outer:began inner:ended outer:ended ");
        willing->setDelegate({});
    }
    rules->mayBegin = false;
    inner->setDelegate(rules);
    down(1, 200, 200);
    move(1, 230, 200);
    up(1, 230, 200);
    EXPECT_EQ(heard(), "outer:began outer:ended ");
    rules->mayBegin = true;
    rules->mayReceive = false;
    down(1, 200, 200);
    EXPECT_EQ(inner->numberOfTouches(), 0u);
    EXPECT_EQ(outer->numberOfTouches(), 1u);
}

TEST_F(GestureExclusivityTest, ViewsHearUntilAGestureTakesTheTouch)
{
    const auto heardView = addView<HeardView>(*root, {0, 0, 100, 100});
    const auto pan = attach<UIPanGestureRecognizer>(*root, "pan");
    down(1, 10, 10);
    move(1, 15, 10);
    down(2, 20, 20); // a second finger does not reach a view that takes one
    move(2, 20, 21);
    up(2, 20, 21);
    up(1, 15, 10);
    EXPECT_EQ(heardView->log, "b1m1e1");
    heardView->log.clear();
    down(1, 10, 10);
    move(1, 40, 10);
    move(1, 50, 10);
    up(1, 50, 10);
    EXPECT_EQ(heardView->log, "b1c1");
    heardView->log.clear();
    pan->setCancelsTouchesInView(false);
    heardView->setMultipleTouchEnabled(true);
    down(1, 10, 10);
    down(2, 20, 20);
    moveBoth({40, 10}, {50, 20});
    fingers.cancelAllTouches(tick());
    EXPECT_EQ(heardView->log, "b1b2m12c1c2");
}

TEST_F(GestureExclusivityTest, RemovingOrDisablingInsideTheAction)
{
    using State = UIGestureRecognizerState;
    const auto pan = attach<UIPanGestureRecognizer>(*root, "pan");
    pan->addAction([this](UIGestureRecognizer& r) {
        if (r.state() == State::Changed)
            root->removeAllGestureRecognizers();
    });
    down(1, 50, 50);
    move(1, 70, 50);
    move(1, 80, 50);
    EXPECT_EQ(heard(), "pan:began pan:changed pan:cancelled ");
    EXPECT_EQ(pan->view(), nullptr);
    EXPECT_EQ(pan->state(), State::Possible);
    move(1, 90, 50);
    up(1, 90, 50);
    EXPECT_EQ(heard(), "");

    const auto other = attach<UIPanGestureRecognizer>(*root, "other");
    other->addAction([](UIGestureRecognizer& r) { r.setEnabled(false); });
    down(1, 50, 50);
    move(1, 70, 50);
    other->setEnabled(true); // the finger it has lost is not taken up again
    move(1, 90, 50);
    up(1, 90, 50);
    EXPECT_EQ(heard(), "other:began other:cancelled ");

    const auto closing = attach<UITapGestureRecognizer>(*child, "tap");
    closing->addAction([this](UIGestureRecognizer&) { child->removeFromSuperview(); });
    tap(200, 200);
    EXPECT_EQ(heard(), "tap:ended ");
    EXPECT_EQ(child->superview(), nullptr);
    EXPECT_EQ(closing->state(), State::Possible);
}

TEST_F(GestureExclusivityTest, ViewsThatGoTakeTheirGesturesAlong)
{
    const auto pan = attach<UIPanGestureRecognizer>(*child, "pan");
    down(1, 200, 200);
    move(1, 230, 200);
    EXPECT_EQ(heard(), "pan:began ");
    child->removeFromSuperview(); // alive, but no longer under the fingers
    move(1, 240, 200);
    up(1, 240, 200);
    EXPECT_EQ(heard(), "pan:cancelled ");

    root->addSubview(child);
    pan->addAction([this](UIGestureRecognizer& r) { // destroyed by its own gesture
        if (r.state() == UIGestureRecognizerState::Changed) {
            child->removeFromSuperview();
            child.reset();
        }
    });
    down(1, 200, 200);
    down(2, 220, 200);
    moveBoth({230, 200}, {250, 200});
    moveBoth({240, 200}, {260, 200});
    EXPECT_EQ(child, nullptr);
    EXPECT_EQ(pan->view(), nullptr);
    up(1, 240, 200);
    up(2, 260, 200);
    EXPECT_EQ(heard(), "pan:began pan:changed ");

    const auto outer = attach<UIPanGestureRecognizer>(*root, "outer");
    down(1, 200, 200);
    move(1, 230, 200);
    root.reset(); // the whole tree
    move(1, 240, 200);
    up(1, 240, 200);
    EXPECT_EQ(heard(), "outer:began ");
    down(1, 200, 200);
    EXPECT_FALSE(fingers.hasTouches());
}

TEST_F(GestureExclusivityTest, TargetsThatAreGoneHearNothing)
{
    struct Target : std::enable_shared_from_this<Target> {
        void panned(UIPanGestureRecognizer& pan) { translation = pan.translationInView(nullptr); }
        CGPoint translation;
    };
    const auto pan = attach<UIPanGestureRecognizer>(*root, "pan");
    auto target = std::make_shared<Target>();
    pan->addTarget(target.get(), &Target::panned);
    pan->perform({3, 4}, nullptr);
    EXPECT_EQ(target->translation, (CGPoint{3, 4}));
    target.reset();
    EXPECT_TRUE(pan->perform({5, 6}, nullptr));
}

TEST_F(GestureExclusivityTest, BadEventsAreHarmless)
{
    const auto pan = attach<UIPanGestureRecognizer>(*root, "pan");
    const double nan = std::numeric_limits<double>::quiet_NaN();
    move(7, 10, 10);
    up(7, 10, 10);
    down(1, nan, 10);
    down(1, 1e300, 10);
    EXPECT_FALSE(fingers.hasTouches());
    fingers.touchBegan(1, {50, 50}, nan);
    fingers.touchMoved(1, {nan, 50}, 0);
    fingers.touchMoved(1, {90, 50}, -1);
    fingers.touchMoved(1, {95, 50}, std::numeric_limits<double>::infinity());
    EXPECT_EQ(pan->translationInView(nullptr), (CGPoint{5, 0}));
    EXPECT_EQ(heard(), "pan:began pan:changed ");
    fingers.touchBegan(1, {10, 10}, 1); // its end was lost on the way
    EXPECT_EQ(heard(), "pan:cancelled ");
    EXPECT_EQ(pan->numberOfTouches(), 1u);
}

} // namespace
} // namespace lamina
