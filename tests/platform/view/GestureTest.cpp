#include "TouchBench.h"

#include "platform/view/UITouch.h"

#include <limits>
#include <numbers>
#include <ostream>

namespace lamina::test {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

struct Script {
    const char* name;
    const char* recognizers; ///< in the order in which they are attached
    const char* steps;
    const char* heard;
    friend void PrintTo(const Script& script, std::ostream* out) { *out << script.name; }
};

const Script kScripts[] = {
    {"PanBeginsAfterTenPoints", "pan", "1+100,100 1>106,107 1>106,110 1>116,105 1-116,105",
     "pan+0,0 pan~10,-5 pan.10,-5 "},
    {"PanDoesNotJumpAsFingersComeAndGo", "pan",
     "1+100,100 1>120,100 1>130,100 2+300,300 1>140,100&2>310,320 1-140,100 2>310,325 2-310,325",
     "pan+0,0 pan~10,0 pan~20,10 pan~20,15 pan.20,15 "},
    {"PanCountsTheLastStretch", "pan", "1+100,100 1>120,100 1-125,100", "pan+0,0 pan~5,0 pan.5,0 "},
    {"PanIsLost", "pan", "1+100,100 1>120,100 1x", "pan+0,0 panx0,0 "},
    {"PinchIsTheRatioOfDistances", "pinch",
     "1+150,200 2+250,200 1>149,200&2>251,200 1>100,200&2>300,200 3+10,10 1>50,200&2>350,200 2-350,200",
     "pinch+2 pinch~3 pinch.3 "},
    {"PinchWaitsUntilAllAreLifted", "pinch",
     "1+100,200 2+200,200 2>300,200 2-300,200 2+300,200 2>200,200 1-100,200 2-200,200", "pinch+2 pinch.2 "},
    {"PinchFromOnePoint", "pinch", "1+200,200 2+200,200 2>220,200 2>200,200 2x", "pinch+20 pinch~1 pinchx1 "},
    {"RotationFromOnePoint", "rotation", "1+100,50 2+200,50 1>200,50 2-200,50", ""},
    {"RotationCrossesTheSeam", "rotation", "1+200,200 2+100,200 2>200,100 2>300,200 2>200,300 2>100,200 2>200,100 2x",
     "rotation+1.571 rotation~3.142 rotation~4.712 rotation~6.283 rotation~7.854 rotationx7.854 "},
    {"RotationBeginsAfterThreeDegrees", "rotation", "1+0,0 2+100,0 2>100,4 2>100,6 2-100,6",
     "rotation+0.06 rotation.0.06 "},
    {"Tap", "tap", "t50,50 1+50,50 1-58,58 1+50,50 2+90,50 1-50,50 2-90,50", "tap. "},
    {"DoubleTap", "twice", "t50,50 w0.3 t60,60", "twice. "},
    {"DoubleTapTooLate", "twice", "t50,50 w0.4 t50,50 w0.4 t50,50 t50,50", "twice. "},
    {"DoubleTapTooFar", "twice", "t50,50 t95,50 w1 t50,50 t85,50", "twice. "},
    {"LongPress", "press", "1+50,50 w0.4 1>55,55 w0.1 1>150,150 1-150,150", "press+ press~ press. "},
    {"LongPressStraysOrEndsTooSoon", "press", "1+50,50 1>61,50 w1 1-61,50 t50,50 w1 1+50,50 2+60,50 w1", ""},
    {"LongPressAtOnce", "hold", "1+50,50 1>51,50 1-51,50", "hold+ hold~ hold. "},
    {"OneGestureAtATime", "pan tap pinch", "t50,50 1+50,50 1>80,50 2+150,50 1>80,50&2>250,50 1-80,50 2-250,50",
     "tap. pan+0,0 pan~50,0 pan.50,0 "},
    {"SpreadingFingersArePinch", "pan tap pinch", "1+100,50 2+200,50 1>70,50&2>230,50 1>70,90&2>230,90 1x 2x",
     "pinch+1.6 pinch~1.6 pinchx1.6 "},
    {"ChildrenGoBeforeAncestors", "pan child/pan", "d200,200>230,200 d20,20>50,20",
     "child/pan+0,0 child/pan.0,0 pan+0,0 pan.0,0 "},
    {"AHandleKeepsItsFinger", "pan child/hold", "d110,110>150,150", "child/hold+ child/hold~ child/hold. "},
};

class GestureScripts : public TouchBench, public testing::WithParamInterface<Script> {};

TEST_P(GestureScripts, AreHeard)
{
    std::istringstream names(GetParam().recognizers);
    std::vector<std::shared_ptr<UIGestureRecognizer>> recognizers;
    for (std::string name; names >> name;)
        recognizers.push_back(attach(name));
    EXPECT_EQ(play(GetParam().steps), GetParam().heard);
    play("1x 2x 3x");
    for (const auto& recognizer : recognizers)
        EXPECT_TRUE(recognizer->state() == UIGestureRecognizerState::Possible && recognizer->numberOfTouches() == 0);
}

INSTANTIATE_TEST_SUITE_P(, GestureScripts, testing::ValuesIn(kScripts),
                         [](const auto& script) { return std::string(script.param.name); });

class GestureTest : public TouchBench {};

TEST_F(GestureTest, ValuesAreMeasuredInTheViewAskedForAndConsumed)
{
    child->setTransform(CGAffineTransform::rotation(std::numbers::pi / 2).scaled(2, 2));
    const auto pan = attachAs<UIPanGestureRecognizer>("child/pan");
    play("1+200,200 1>220,200 1>230,220"); // (10, 20) on the screen
    // A quarter turn clockwise: the child's x runs down the screen, its y to the left; lengths count half.
    EXPECT_EQ(text(pan->translationInView(child.get())), "10,-5");
    EXPECT_EQ(text(pan->locationInView(root.get())), "230,220");
    pan->setTranslation({1, 0}, child.get());
    EXPECT_EQ(play("1>231,220 1x"), "child/pan~1,2 child/panx1,2 ");

    const auto pinch = attachAs<UIPinchGestureRecognizer>("pinch");
    play("1+10,20 2+20,20 1>10,20&2>30,20");
    for (const double bad : {0.0, -1.0, kNan})
        pinch->setScale(bad);
    EXPECT_EQ(pinch->scale(), 2);
    pinch->setScale(1);
    EXPECT_EQ(play("2>40,20"), "pinch~1.5 ");
    EXPECT_EQ(text(pinch->locationInView(nullptr)), "25,20");
}

TEST_F(GestureTest, GesturesWithoutFingersRunTheSameSteps)
{
    child->setTransform(CGAffineTransform::scaling(2, 2));
    const auto pan = attachAs<UIPanGestureRecognizer>("child/pan");
    EXPECT_TRUE(pan->perform({30, -20}, root.get()));
    EXPECT_EQ(heard(), "child/pan+0,0 child/pan~30,-20 child/pan.30,-20 ");
    EXPECT_TRUE(pan->perform({30, -20}, child.get()));
    EXPECT_EQ(heard(), "child/pan+0,0 child/pan~60,-40 child/pan.60,-40 ");
    const auto pinch = attachAs<UIPinchGestureRecognizer>("child/pinch");
    EXPECT_TRUE(pinch->perform(2.5));
    EXPECT_EQ(heard(), "child/pinch+1 child/pinch~2.5 child/pinch.2.5 ");
    EXPECT_EQ(text(pinch->locationInView(root.get())), "200,200");
    EXPECT_FALSE(pinch->perform(kNan));

    const auto rules = std::make_shared<Rules>();
    rules->mayBegin = false;
    pan->setDelegate(rules);
    EXPECT_FALSE(pan->perform({1, 1}, nullptr));
    pan->setDelegate({});
    pan->setEnabled(false);
    EXPECT_FALSE(pan->perform({1, 1}, nullptr));
    child->removeGestureRecognizer(*pinch);
    EXPECT_FALSE(pinch->perform(2));
    EXPECT_EQ(heard(), "");
}

TEST_F(GestureTest, WheelsAndTouchpadsReachTheNearestRecogniser)
{
    attach("child/pinch");
    const auto far = attachAs<UIPinchGestureRecognizer>("pinch");
    const auto turn = attach("rotation");
    const std::string near = "child/pinch+1 child/pinch~0.5 child/pinch.0.5 ";
    EXPECT_TRUE(fingers.wheel({150, 160}, 2));
    EXPECT_EQ(heard(), "child/pinch+1 child/pinch~1.21 child/pinch.1.21 ");
    EXPECT_TRUE(fingers.magnify({20, 30}, 0.5));
    EXPECT_EQ(heard(), "pinch+1 pinch~0.5 pinch.0.5 ");
    EXPECT_EQ(text(far->locationInView(nullptr)), "20,30");
    EXPECT_TRUE(fingers.magnify({150, 160}, 0.5));
    EXPECT_EQ(heard(), near);
    const auto rules = std::make_shared<Rules>();
    rules->together = true;
    far->setDelegate(rules);
    EXPECT_TRUE(fingers.magnify({150, 160}, 0.5));
    EXPECT_EQ(heard(), near + "pinch+1 pinch~0.5 pinch.0.5 ");
    EXPECT_TRUE(fingers.wheel({150, 160}, -1, TouchDispatcher::Shift));
    EXPECT_EQ(heard(), "rotation+0 rotation~-0.052 rotation.-0.052 ");

    root->removeGestureRecognizer(*turn);
    EXPECT_FALSE(fingers.wheel({150, 160}, 1, TouchDispatcher::Shift));
    EXPECT_FALSE(fingers.magnify({150, 160}, 0));
    EXPECT_FALSE(fingers.wheel({500, 500}, 1));
    EXPECT_FALSE(fingers.wheel({kNan, 0}, 1));
    EXPECT_EQ(heard(), "");
}

TEST_F(GestureTest, EitherDelegateLetsBothGo)
{
    const auto outer = attach("pan");
    const auto inner = attach("child/pan");
    const auto rules = std::make_shared<Rules>();
    rules->together = true;
    for (const auto& willing : {outer, inner}) {
        willing->setDelegate(rules);
        EXPECT_EQ(play("d200,200>230,200"), "child/pan+0,0 pan+0,0 child/pan.0,0 pan.0,0 ");
        willing->setDelegate({});
    }
    rules->mayBegin = false;
    inner->setDelegate(rules);
    EXPECT_EQ(play("d200,200>230,200"), "pan+0,0 pan.0,0 ");
    rules->mayBegin = true;
    rules->mayReceive = false;
    play("1+200,200");
    EXPECT_EQ(inner->numberOfTouches(), 0u);
    EXPECT_EQ(outer->numberOfTouches(), 1u);
}

/// Logs what touches tell it.
class HeardView : public UIView {
public:
    using UIView::UIView;
    void touchesBegan(const std::vector<UITouch*>& touches) override { note('+', touches); }
    void touchesMoved(const std::vector<UITouch*>& touches) override { note('>', touches); }
    void touchesEnded(const std::vector<UITouch*>& touches) override { note('-', touches); }
    void touchesCancelled(const std::vector<UITouch*>& touches) override { note('x', touches); }

    std::string log;

private:
    void note(char what, const std::vector<UITouch*>& touches)
    {
        for (const UITouch* touch : touches)
            log += std::to_string(touch->id);
        log += what;
    }
};

TEST_F(GestureTest, ViewsHearUntilAGestureTakesTheTouch)
{
    const auto view = addView<HeardView>({0, 0, 100, 100});
    const auto heardBy = [&](const char* script) {
        play(script);
        return std::exchange(view->log, {});
    };
    const char* const bothMove = "1+10,10 2+20,20 1>11,10&2>21,20 1-11,10 2x";
    EXPECT_EQ(heardBy(bothMove), "1+1>1-");
    view->setMultipleTouchEnabled(true);
    EXPECT_EQ(heardBy(bothMove), "1+2+12>1-2x");
    attach("pan");
    EXPECT_EQ(heardBy("1+10,10 1>40,10 1>50,10 1-50,10"), "1+1x");
}

TEST_F(GestureTest, RemovingOrDisablingInsideTheAction)
{
    using State = UIGestureRecognizerState;
    const auto pan = attach("pan");
    pan->addAction([this](UIGestureRecognizer& r) {
        if (r.state() == State::Changed)
            root->removeAllGestureRecognizers();
    });
    EXPECT_EQ(play("1+50,50 1>70,50 1>80,50 1>90,50 1-90,50"), "pan+0,0 pan~10,0 panx10,0 ");
    EXPECT_EQ(pan->view(), nullptr);
    EXPECT_EQ(pan->state(), State::Possible);

    const auto other = attach("pan");
    other->addAction([](UIGestureRecognizer& r) { r.setEnabled(false); });
    EXPECT_EQ(play("1+50,50 1>70,50"), "pan+0,0 panx0,0 ");
    other->setEnabled(true); // the finger it has lost is not taken up again
    EXPECT_EQ(play("1>90,50 1-90,50"), "");

    const auto closing = attach("child/tap");
    closing->addAction([this](UIGestureRecognizer&) { child->removeFromSuperview(); });
    EXPECT_EQ(play("t200,200"), "child/tap. ");
    EXPECT_EQ(child->superview(), nullptr);
    EXPECT_EQ(closing->state(), State::Possible);
}

TEST_F(GestureTest, ViewsThatGoTakeTheirGesturesAlong)
{
    const auto pan = attach("child/pan");
    EXPECT_EQ(play("1+200,200 1>230,200"), "child/pan+0,0 ");
    child->removeFromSuperview(); // alive, but no longer under the fingers
    EXPECT_EQ(play("1>240,200 1-240,200"), "child/panx0,0 ");

    root->addSubview(child);
    pan->addAction([this](UIGestureRecognizer& r) { // destroyed by its own gesture
        if (r.state() == UIGestureRecognizerState::Changed) {
            child->removeFromSuperview();
            child.reset();
        }
    });
    EXPECT_EQ(play("1+200,200 2+220,200 1>230,200&2>250,200 1>240,200&2>260,200 1-240,200 2-260,200"),
              "child/pan+0,0 child/pan~10,0 ");
    EXPECT_EQ(child, nullptr);
    EXPECT_EQ(pan->view(), nullptr);

    const auto outer = attach("pan");
    EXPECT_EQ(play("1+200,200 1>230,200"), "pan+0,0 ");
    root.reset(); // the whole tree
    EXPECT_EQ(play("1>240,200 1-240,200 1+200,200"), "");
    EXPECT_FALSE(fingers.hasTouches());
}

TEST_F(GestureTest, TargetsThatAreGoneHearNothing)
{
    struct Target : std::enable_shared_from_this<Target> {
        void panned(UIPanGestureRecognizer& pan) { translation = pan.translationInView(nullptr); }
        CGPoint translation;
    };
    const auto pan = attachAs<UIPanGestureRecognizer>("pan");
    auto target = std::make_shared<Target>();
    pan->addTarget(target.get(), &Target::panned);
    pan->perform({3, 4}, nullptr);
    EXPECT_EQ(target->translation, (CGPoint{3, 4}));
    target.reset();
    EXPECT_TRUE(pan->perform({5, 6}, nullptr));
}

TEST_F(GestureTest, BadEventsAreHarmless)
{
    const auto pan = attach("pan");
    EXPECT_EQ(play("7>10,10 7-10,10 1+1e300,10"), "");
    fingers.touchBegan(1, {kNan, 10}, 0);
    EXPECT_FALSE(fingers.hasTouches());
    fingers.touchBegan(1, {50, 50}, kNan);
    fingers.touchMoved(1, {kNan, 50}, 0);
    fingers.touchMoved(1, {90, 50}, -1);
    fingers.touchMoved(1, {95, 50}, std::numeric_limits<double>::infinity());
    EXPECT_EQ(heard(), "pan+0,0 pan~5,0 ");
    fingers.touchBegan(1, {10, 10}, 1); // its end was lost on the way
    EXPECT_EQ(heard(), "panx5,0 ");
    EXPECT_EQ(pan->numberOfTouches(), 1u);
}

} // namespace
} // namespace lamina::test
