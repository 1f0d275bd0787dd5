#include "TouchBench.h"

#include "platform/view/UIPointerShape.h"
#include "platform/view/UITouch.h"

#include <limits>
#include <numbers>
#include <ostream>

namespace lamina::test {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

struct Script {
    const char* name;
    const char* recognizers; ///< in the order in which they are attached; "beside": the child takes what is left over
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
    {"PanCountsAnewWhenAFingerGoes", "pan", "1+100,100 2+200,100 1>108,100&2>208,100 2-208,100 1>112,100 1-112,100",
     ""},
    {"PanCountsTheLastStretch", "pan", "1+100,100 1>120,100 1-125,100", "pan+0,0 pan~5,0 pan.5,0 "},
    {"PinchIsTheRatioOfDistances", "pinch",
     "1+150,200 2+250,200 1>149,200&2>251,200 1>100,200&2>300,200 3+10,10 1>50,200&2>350,200 2-350,200",
     "pinch+2 pinch~3 pinch.3 "},
    {"PinchWaitsUntilAllAreLifted", "pinch",
     "1+100,200 2+200,200 2>300,200 2-300,200 2+300,200 2>200,200 1-100,200 2-200,200", "pinch+2 pinch.2 "},
    {"PinchFromOnePoint", "pinch", "1+200,200 2+200,200 2>220,200 2>200,200 2x", "pinch+20 pinch~1 pinchx1 "},
    {"RotationFromOnePoint", "rotation", "1+100,50 2+200,50 1>200,50 2-200,50", ""},
    {"RotationCrossesTheSeam", "rotation", "1+200,200 2+100,200 2>200,100 2>300,200 2>200,300 2>100,200 2>200,100 2x",
     "rotation+1.571 rotation~3.142 rotation~4.712 rotation~6.283 rotation~7.854 rotationx7.854 "},
    {"RotationBeginsAfterThreeDegrees", "rotation", "1+0,0 2+100,0 2>100,4 2>100,6 2x", "rotation+0.06 rotationx0.06 "},
    {"Tap", "tap", "t50,50 1+50,50 1-58,58 1+50,50 2+90,50 1-50,50 2-90,50", "tap. "},
    {"DoubleTapHeld", "twice", "t50,50 w0.3 1+50,50 w0.2 1-50,50", "twice. "},
    {"DoubleTapTooLate", "twice", "t50,50 w0.4 t50,50 w0.4 t50,50 t50,50", "twice. "},
    {"DoubleTapTooFar", "twice", "t50,50 t95,50 w1 t50,50 t85,50", "twice. "},
    {"LongPress", "press", "1+50,50 w0.4 1>55,55 w0.1 1>150,150 1-150,150", "press+ press~ press. "},
    {"LongPressStraysOrEndsTooSoon", "press", "1+50,50 1>61,50 w1 1-61,50 t50,50 w1 1+50,50 2+60,50 w1", ""},
    {"OneGestureAtATime", "pan tap pinch", "t50,50 1+50,50 1>80,50 2+150,50 1>80,50&2>250,50 1-80,50 2-250,50",
     "tap. pan+0,0 pan~50,0 pan.50,0 "},
    {"SpreadingFingersPinch", "pan pinch", "1+100,50 2+200,50 1>70,50&2>230,50 1>70,90&2>230,90 1x 2x",
     "pinch+1.6 pinch~1.6 pinchx1.6 "},
    {"ChildrenGoBeforeAncestors", "pan child/pan", "d200,200>230,200 d20,20>50,20",
     "child/pan+0,0 child/pan.0,0 pan+0,0 pan.0,0 "},
    {"ASecondFingerMakesAPinchOfADrag", "again pinch",
     "1+100,100 1>120,100 1>130,100 2+230,100 2>330,100 1-130,100 2-330,100",
     "again+0,0 again~10,0 again.10,0 pinch+2 pinch.2 "},
    {"ASecondFingerMayDragOn", "again pinch", "1+100,100 1>120,100 2+200,100 1>120,120&2>200,120 1x 2x",
     "again+0,0 again.0,0 again+0,0 againx0,0 "},
    {"BesideTheChildItIsCaught", "beside child/again child/pinch",
     "d20,20>50,20 1+200,200 2+320,200 1>140,200&2>380,200 1x 2x",
     "child/again+0,0 child/again.0,0 child/pinch+2 child/pinchx2 "},
    {"WhatIsTakenIsNotLeftOver", "beside tap child/pan", "d20,20>50,20 t20,20", "tap. "},
    {"AHandleKeepsItsFinger", "pan child/hold", "d110,110>150,150", "child/hold+ child/hold~ child/hold. "},
};

class GestureScripts : public TouchBench, public testing::WithParamInterface<Script> {};

TEST_P(GestureScripts, AreHeard)
{
    std::istringstream names(GetParam().recognizers);
    std::vector<std::shared_ptr<UIGestureRecognizer>> recognizers;
    for (std::string name; names >> name;) {
        if (name == "beside")
            root->fallback = child.get();
        else
            recognizers.push_back(attach(name));
    }
    EXPECT_EQ(play(GetParam().steps), GetParam().heard);
    play("1x 2x 3x");
    for (const auto& recognizer : recognizers)
        EXPECT_TRUE(recognizer->state() == UIGestureRecognizerState::Possible && recognizer->numberOfTouches() == 0);
}

INSTANTIATE_TEST_SUITE_P(, GestureScripts, testing::ValuesIn(kScripts),
                         [](const auto& script) { return std::string(script.param.name); });

/// Two recognisers may go together, and other answers that a test sets.
class Rules : public UIGestureRecognizerDelegate {
public:
    bool gestureRecognizerShouldBegin(UIGestureRecognizer&) override { return mayBegin; }
    bool gestureRecognizerShouldReceiveTouch(UIGestureRecognizer&, const UITouch&) override { return mayReceive; }
    bool gestureRecognizer(UIGestureRecognizer&, UIGestureRecognizer&) override { return together; }

    bool mayBegin = true;
    bool mayReceive = true;
    bool together = false;
};

class GestureTest : public TouchBench {
protected:
    const std::shared_ptr<Rules> rules = std::make_shared<Rules>();
};

TEST_F(GestureTest, APanIsMeasuredInTheViewAskedForAndConsumed)
{
    child->setTransform(CGAffineTransform::rotation(std::numbers::pi / 2).scaled(2, 2));
    const auto pan = attachAs<UIPanGestureRecognizer>("child/pan");
    play("1+200,200 1>220,200 1>230,220"); // (10, 20) on the screen
    // A quarter turn clockwise: the child's x runs down the screen, its y to the left; lengths count half.
    EXPECT_EQ(text(pan->translationInView(child.get())), "10,-5");
    pan->setTranslation({1, 0}, child.get());
    EXPECT_EQ(play("1>231,220 1x"), "child/pan~1,2 child/panx1,2 ");
}

TEST_F(GestureTest, WheelsAndTouchpadsReachTheNearestRecogniser)
{
    attach("child/pinch");
    const auto far = attachAs<UIPinchGestureRecognizer>("pinch");
    const auto turn = attach("rotation");
    EXPECT_TRUE(fingers.wheel({150, 160}, 2));
    EXPECT_EQ(play(""), "child/pinch+1 child/pinch~1.21 child/pinch.1.21 ");
    EXPECT_TRUE(fingers.magnify({20, 30}, 0.5));
    EXPECT_EQ(play(""), "pinch+1 pinch~0.5 pinch.0.5 ");
    EXPECT_EQ(text(far->locationInView(nullptr)), "20,30");
    rules->together = true;
    far->setDelegate(rules);
    EXPECT_TRUE(fingers.magnify({150, 160}, 0.5));
    EXPECT_EQ(play(""), "child/pinch+1 child/pinch~0.5 child/pinch.0.5 pinch+1 pinch~0.5 pinch.0.5 ");
    EXPECT_TRUE(fingers.wheel({150, 160}, -1, TouchDispatcher::Shift));
    EXPECT_EQ(play(""), "rotation+0 rotation~-0.052 rotation.-0.052 ");

    root->removeGestureRecognizer(*turn);
    EXPECT_FALSE(fingers.wheel({150, 160}, 1, TouchDispatcher::Shift));
    far->setEnabled(false);
    EXPECT_FALSE(fingers.wheel({20, 30}, 1));
    EXPECT_FALSE(fingers.magnify({150, 160}, 0));
    EXPECT_FALSE(fingers.wheel({kNan, 0}, 1));
    EXPECT_EQ(play(""), "");
}

TEST_F(GestureTest, WhatIsLeftOverReachesTheWheelAndThePointer)
{
    using Shape = UIPointerShape;
    const auto shapes = [this] { return std::pair(fingers.pointerShape({150, 160}), fingers.pointerShape({20, 30})); };
    attach("child/pinch");
    EXPECT_FALSE(fingers.wheel({20, 30}, 1));
    root->fallback = child.get();
    EXPECT_TRUE(fingers.wheel({20, 30}, 1));
    EXPECT_EQ(shapes(), std::pair(Shape::Arrow, Shape::Arrow)); // it zooms, but can't be dragged
    const auto pan = attach("child/pan");
    child->setHidden(true); // or out of reach: it is caught all the same
    EXPECT_EQ(shapes(), std::pair(Shape::OpenHand, Shape::OpenHand));
    pan->setEnabled(false);
    attach("child/hold");
    child->setHidden(false);
    root->fallback = nullptr;
    EXPECT_EQ(shapes(), std::pair(Shape::OpenHand, Shape::Arrow));
    child->setPointerShape(Shape::Cross);
    EXPECT_EQ(shapes().first, Shape::Cross);
    UIView stranger;
    root->fallback = &stranger;
    EXPECT_FALSE(fingers.wheel({20, 30}, 1));
}

TEST_F(GestureTest, EitherDelegateLetsBothGo)
{
    const auto outer = attach("pan");
    const auto inner = attach("child/pan");
    rules->together = true;
    for (const auto& willing : {outer, inner}) {
        willing->setDelegate(rules);
        EXPECT_EQ(play("d200,200>230,200"), "child/pan+0,0 pan+0,0 child/pan.0,0 pan.0,0 ");
        willing->setDelegate({});
    }
    rules->mayBegin = false;
    inner->setDelegate(rules);
    EXPECT_EQ(play("d200,200>230,200"), "pan+0,0 pan.0,0 ");
    rules->mayReceive = false;
    play("1+200,200");
    EXPECT_EQ(inner->numberOfTouches(), 0u);
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
    EXPECT_EQ(pan->state(), State::Possible);

    const auto other = attach("pan");
    other->addAction([](UIGestureRecognizer& r) { r.setEnabled(false); });
    EXPECT_EQ(play("1+50,50 1>70,50"), "pan+0,0 panx0,0 ");
    other->setEnabled(true); // the finger it has lost is not taken up again
    EXPECT_EQ(play("1>90,50 1-90,50"), "");
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
    EXPECT_EQ(pan->view(), nullptr);

    attach("pan");
    EXPECT_EQ(play("1+200,200 1>230,200"), "pan+0,0 ");
    root.reset(); // the whole tree
    EXPECT_EQ(play("1>240,200 1-240,200 1+200,200"), "");
    EXPECT_FALSE(fingers.hasTouches());
}

TEST_F(GestureTest, TargetsThatAreGoneHearNothing)
{
    struct Target : std::enable_shared_from_this<Target> {
        void panned(UIPanGestureRecognizer&) { FAIL(); }
    };
    const auto pan = attachAs<UIPanGestureRecognizer>("pan");
    pan->addTarget(std::make_shared<Target>().get(), &Target::panned);
    EXPECT_TRUE(pan->perform({5, 6}, nullptr));
}

TEST_F(GestureTest, BadEventsAreHarmless)
{
    attach("pan");
    EXPECT_EQ(play("7>10,10 7-10,10 1+1e300,10"), "");
    fingers.touchBegan(1, {kNan, 10}, 0);
    EXPECT_FALSE(fingers.hasTouches());
    fingers.touchBegan(1, {50, 50}, kNan);
    fingers.touchMoved(1, {kNan, 50}, 0);
    fingers.touchMoved(1, {90, 50}, -1);
    fingers.touchMoved(1, {95, 50}, std::numeric_limits<double>::infinity());
    EXPECT_EQ(play(""), "pan+0,0 pan~5,0 ");
    fingers.touchBegan(1, {10, 10}, 1); // its end was lost on the way
    EXPECT_EQ(play("1>30,10"), "panx5,0 pan+0,0 ");
}

} // namespace
} // namespace lamina::test
