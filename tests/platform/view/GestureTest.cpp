#include "TouchBench.h"

#include "platform/view/UIControl.h"
#include "platform/view/UILongPressGestureRecognizer.h"
#include "platform/view/UIPanGestureRecognizer.h"
#include "platform/view/UIPinchGestureRecognizer.h"
#include "platform/view/UIRotationGestureRecognizer.h"
#include "platform/view/UITapGestureRecognizer.h"

#include <limits>
#include <numbers>

namespace lamina {
namespace {

constexpr double kPi = std::numbers::pi;

class GestureTest : public test::TouchBench {};

TEST_F(GestureTest, PanBeginsAfterTenPointsAndCountsFromThere)
{
    const auto pan = attach<UIPanGestureRecognizer>(*root, "pan");
    down(1, 100, 100);
    move(1, 106, 107); // 9.2 points
    EXPECT_EQ(heard(), "");
    move(1, 106, 110);
    EXPECT_EQ(heard(), "pan:began ");
    EXPECT_EQ(pan->translationInView(root.get()), (CGPoint{0, 0}));
    move(1, 116, 105);
    EXPECT_EQ(pan->translationInView(root.get()), (CGPoint{10, -5}));
    pan->setTranslation({}, root.get());
    move(1, 120, 105);
    EXPECT_EQ(pan->translationInView(root.get()), (CGPoint{4, 0}));
    EXPECT_EQ(pan->locationInView(root.get()), (CGPoint{120, 105}));
    up(1, 120, 105);
    EXPECT_EQ(heard(), "pan:changed pan:changed pan:ended ");
    EXPECT_EQ(pan->state(), UIGestureRecognizerState::Possible);
    EXPECT_EQ(pan->numberOfTouches(), 0u);
}

TEST_F(GestureTest, PanDoesNotJumpWhenFingersComeAndGo)
{
    const auto pan = attach<UIPanGestureRecognizer>(*root, "pan");
    down(1, 100, 100);
    move(1, 120, 100);
    move(1, 130, 100);
    down(2, 300, 300);
    EXPECT_EQ(pan->translationInView(nullptr), (CGPoint{10, 0}));
    moveBoth({140, 100}, {310, 320}); // their middle moves by (10, 10)
    EXPECT_EQ(pan->translationInView(nullptr), (CGPoint{20, 10}));
    up(1, 140, 100);
    EXPECT_EQ(pan->translationInView(nullptr), (CGPoint{20, 10}));
    move(2, 310, 325);
    EXPECT_EQ(pan->translationInView(nullptr), (CGPoint{20, 15}));
    heard();
    up(2, 310, 325);
    EXPECT_EQ(heard(), "pan:ended ");
}

TEST_F(GestureTest, PanKeepsToItsNumberOfFingers)
{
    const auto two = attach<UIPanGestureRecognizer>(*root, "two");
    two->setMinimumNumberOfTouches(2);
    down(1, 100, 100);
    move(1, 150, 100);
    EXPECT_EQ(heard(), "");
    down(2, 200, 100);
    moveBoth({165, 100}, {215, 100});
    up(1, 165, 100);
    EXPECT_EQ(heard(), "two:began two:ended ");
    up(2, 215, 100);

    root->removeGestureRecognizer(*two);
    const auto one = attach<UIPanGestureRecognizer>(*root, "one");
    one->setMaximumNumberOfTouches(1);
    down(1, 100, 100);
    down(2, 200, 100);
    moveBoth({130, 100}, {230, 100});
    EXPECT_EQ(heard(), "");
    EXPECT_EQ(one->state(), UIGestureRecognizerState::Failed);
}

TEST_F(GestureTest, PanIsMeasuredInTheViewAskedFor)
{
    const auto child = addView(*root, {100, 100, 200, 200});
    child->setTransform(CGAffineTransform::rotation(kPi / 2).scaled(2, 2));
    const auto pan = attach<UIPanGestureRecognizer>(*child, "pan");
    down(1, 200, 200);
    move(1, 220, 200);
    move(1, 230, 220); // (10, 20) on the screen
    const CGPoint inside = pan->translationInView(child.get());
    // A quarter turn clockwise: the child's x runs down the screen, its y to the left; lengths count half.
    EXPECT_NEAR(inside.x, 10, 1e-9);
    EXPECT_NEAR(inside.y, -5, 1e-9);
    pan->setTranslation({1, 0}, child.get());
    EXPECT_NEAR(pan->translationInView(root.get()).x, 0, 1e-9);
    EXPECT_NEAR(pan->translationInView(root.get()).y, 2, 1e-9);
}

TEST_F(GestureTest, PanVelocityForgetsARest)
{
    const auto pan = attach<UIPanGestureRecognizer>(*root, "pan");
    fingers.touchBegan(1, {100, 100}, 0);
    for (int step = 1; step <= 10; ++step)
        fingers.touchMoved(1, {100.0 + 20 * step, 100.0 - 10 * step}, 0.02 * step);
    EXPECT_NEAR(pan->velocityInView(nullptr).x, 1000, 1e-6);
    EXPECT_NEAR(pan->velocityInView(nullptr).y, -500, 1e-6);
    CGPoint atEnd{-1, -1};
    pan->addAction([&](UIGestureRecognizer&) { atEnd = pan->velocityInView(nullptr); });
    fingers.touchEnded(1, {300, 0}, 2);
    EXPECT_EQ(atEnd, (CGPoint{0, 0}));
}

TEST_F(GestureTest, PinchIsTheRatioOfTheFingersDistances)
{
    const auto pinch = attach<UIPinchGestureRecognizer>(*root, "pinch");
    down(1, 150, 200);
    down(2, 250, 200);
    moveBoth({149, 200}, {251, 200});
    EXPECT_EQ(heard(), "");
    moveBoth({100, 200}, {300, 200});
    EXPECT_EQ(heard(), "pinch:began ");
    EXPECT_DOUBLE_EQ(pinch->scale(), 2);
    pinch->setScale(1);
    down(3, 10, 10); // a third finger plays no part
    moveBoth({50, 200}, {350, 200});
    EXPECT_DOUBLE_EQ(pinch->scale(), 1.5);
    EXPECT_EQ(pinch->locationInView(nullptr), (CGPoint{200, 200}));
    up(2, 350, 200);
    EXPECT_EQ(heard(), "pinch:changed pinch:ended ");
    down(2, 300, 200); // not before all are lifted
    moveBoth({50, 200}, {100, 200});
    EXPECT_EQ(heard(), "");
}

TEST_F(GestureTest, FingersOnOnePointGiveFiniteValues)
{
    const auto pinch = attach<UIPinchGestureRecognizer>(*root, "pinch");
    const auto rotation = attach<UIRotationGestureRecognizer>(*addView(*root, {0, 0, 400, 100}), "rotation");
    down(1, 200, 200);
    down(2, 200, 200);
    moveBoth({200, 200}, {220, 200});
    EXPECT_DOUBLE_EQ(pinch->scale(), 20);
    moveBoth({210, 200}, {210, 200});
    EXPECT_DOUBLE_EQ(pinch->scale(), 1);
    for (const double bad : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()})
        pinch->setScale(bad);
    EXPECT_DOUBLE_EQ(pinch->scale(), 1);
    fingers.cancelAllTouches(time);

    down(1, 100, 50);
    down(2, 200, 50);
    moveBoth({200, 50}, {200, 50});
    EXPECT_DOUBLE_EQ(rotation->rotation(), 0);
}

TEST_F(GestureTest, RotationCrossesTheSeamWithoutAJump)
{
    const auto rotation = attach<UIRotationGestureRecognizer>(*root, "rotation");
    const CGPoint middle{200, 200};
    down(1, 200, 200);
    down(2, 100, 200); // at 180 degrees, where atan2 jumps
    for (int step = 1; step <= 10; ++step) {
        const double angle = kPi + step * 0.1;
        move(2, middle.x + 100 * std::cos(angle), middle.y + 100 * std::sin(angle));
    }
    EXPECT_NEAR(rotation->rotation(), 1.0, 1e-9);
    EXPECT_EQ(log.substr(0, 15), "rotation:began ");
    rotation->setRotation(0);
    move(2, middle.x + 100 * std::cos(kPi + 0.8), middle.y + 100 * std::sin(kPi + 0.8));
    EXPECT_NEAR(rotation->rotation(), -0.2, 1e-9);
}

TEST_F(GestureTest, TapsCountFingersPlacesAndTime)
{
    const auto one = attach<UITapGestureRecognizer>(*root, "one");
    tap(50, 50);
    EXPECT_EQ(heard(), "one:ended ");
    down(1, 50, 50);
    up(1, 58, 58); // 11.3 points away
    EXPECT_EQ(heard(), "");
    down(1, 50, 50);
    down(2, 90, 50);
    up(1, 50, 50);
    up(2, 90, 50);
    EXPECT_EQ(heard(), "");

    root->removeGestureRecognizer(*one);
    const auto twice = attach<UITapGestureRecognizer>(*root, "twice");
    twice->setNumberOfTapsRequired(2);
    tap(50, 50);
    wait(0.3);
    tap(60, 60);
    EXPECT_EQ(heard(), "twice:ended ");
    tap(50, 50);
    wait(0.4); // too late: this is a first tap again
    tap(50, 50);
    EXPECT_EQ(heard(), "");
    wait(0.4);
    tap(50, 50);
    tap(200, 50); // too far
    EXPECT_EQ(heard(), "");

    root->removeGestureRecognizer(*twice);
    const auto fork = attach<UITapGestureRecognizer>(*root, "fork");
    fork->setNumberOfTouchesRequired(2);
    tap(50, 50);
    EXPECT_EQ(heard(), "");
    down(1, 50, 50);
    down(2, 90, 50);
    up(1, 50, 50);
    up(2, 90, 50);
    EXPECT_EQ(heard(), "fork:ended ");
}

TEST_F(GestureTest, SingleTapWaitsForTheDoubleTapToFail)
{
    const auto single = attach<UITapGestureRecognizer>(*root, "single");
    const auto twice = attach<UITapGestureRecognizer>(*root, "twice");
    twice->setNumberOfTapsRequired(2);
    single->requireGestureRecognizerToFail(twice);
    tap(50, 50);
    EXPECT_EQ(heard(), "");
    wait(0.4);
    EXPECT_EQ(heard(), "single:ended ");
    tap(50, 50);
    tap(50, 50);
    EXPECT_EQ(heard(), "twice:ended ");
    wait(1);
    EXPECT_EQ(heard(), "");
    tap(50, 50); // nothing is stuck
    wait(0.4);
    EXPECT_EQ(heard(), "single:ended ");
    tap(50, 50);
    root->removeGestureRecognizer(*twice); // the one waited for goes away
    tap(60, 60);
    EXPECT_EQ(heard(), "single:ended single:ended ");
}

TEST_F(GestureTest, LongPressWaitsOrBeginsAtOnce)
{
    const auto press = attach<UILongPressGestureRecognizer>(*root, "press");
    down(1, 50, 50);
    wait(0.4);
    move(1, 55, 55);
    EXPECT_EQ(heard(), "");
    wait(0.1);
    EXPECT_EQ(heard(), "press:began ");
    move(1, 150, 150);
    up(1, 150, 150);
    EXPECT_EQ(heard(), "press:changed press:ended ");

    down(1, 50, 50);
    move(1, 61, 50); // strays too far before its time
    wait(1);
    up(1, 61, 50);
    down(1, 50, 50); // lifted too early
    up(1, 50, 50);
    wait(1);
    EXPECT_EQ(heard(), "");

    press->setMinimumPressDuration(0);
    down(1, 50, 50);
    EXPECT_EQ(heard(), "press:began ");
    move(1, 51, 50);
    up(1, 51, 50);
    EXPECT_EQ(heard(), "press:changed press:ended ");
}

TEST_F(GestureTest, GesturesWithoutFingersRunTheSameSteps)
{
    const auto child = addView(*root, {100, 100, 200, 200});
    child->setTransform(CGAffineTransform::scaling(2, 2));
    const auto pan = attach<UIPanGestureRecognizer>(*child, "pan");
    CGPoint moved;
    pan->addAction([&](UIGestureRecognizer&) {
        const CGPoint step = pan->translationInView(root.get());
        moved = {moved.x + step.x, moved.y + step.y};
        pan->setTranslation({}, root.get());
    });
    EXPECT_TRUE(pan->perform({30, -20}, root.get()));
    EXPECT_EQ(heard(), "pan:began pan:changed pan:ended ");
    EXPECT_EQ(moved, (CGPoint{30, -20}));
    EXPECT_TRUE(pan->perform({30, -20}, child.get()));
    EXPECT_EQ(moved, (CGPoint{90, -60}));

    const auto pinch = attach<UIPinchGestureRecognizer>(*child, "pinch");
    double product = 1;
    CGPoint at;
    pinch->addAction([&](UIGestureRecognizer&) {
        product *= pinch->scale();
        pinch->setScale(1);
        at = pinch->locationInView(root.get());
    });
    heard();
    EXPECT_TRUE(pinch->perform(2.5));
    EXPECT_EQ(heard(), "pinch:began pinch:changed pinch:ended ");
    EXPECT_DOUBLE_EQ(product, 2.5);
    EXPECT_EQ(at, (CGPoint{200, 200}));
    EXPECT_FALSE(pinch->perform(std::numeric_limits<double>::quiet_NaN()));

    const auto rules = std::make_shared<test::Rules>();
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
    const auto child = addView(*root, {100, 100, 200, 200});
    const auto near = attach<UIPinchGestureRecognizer>(*child, "near");
    const auto far = attach<UIPinchGestureRecognizer>(*root, "far");
    const auto turn = attach<UIRotationGestureRecognizer>(*root, "turn");
    double scale = 0;
    CGPoint at;
    near->addAction([&](UIGestureRecognizer& r) {
        if (r.state() != UIGestureRecognizerState::Changed)
            return;
        scale = near->scale();
        at = near->locationInView(child.get());
    });
    EXPECT_TRUE(fingers.wheel({150, 160}, 2));
    EXPECT_DOUBLE_EQ(scale, 1.1 * 1.1);
    EXPECT_EQ(at, (CGPoint{50, 60}));
    EXPECT_EQ(heard(), "near:began near:changed near:ended ");
    EXPECT_TRUE(fingers.magnify({20, 20}, 0.5));
    EXPECT_EQ(heard(), "far:began far:changed far:ended ");
    const auto rules = std::make_shared<test::Rules>();
    rules->together = true;
    far->setDelegate(rules);
    EXPECT_TRUE(fingers.magnify({150, 160}, 0.5));
    EXPECT_EQ(heard(), "near:began near:changed near:ended far:began far:changed far:ended ");
    EXPECT_TRUE(fingers.wheel({150, 160}, -1, TouchDispatcher::Shift));
    EXPECT_EQ(heard(), "turn:began turn:changed turn:ended ");

    root->removeGestureRecognizer(*turn);
    EXPECT_FALSE(fingers.wheel({150, 160}, 1, TouchDispatcher::Shift));
    EXPECT_FALSE(fingers.magnify({150, 160}, 0));
    EXPECT_FALSE(fingers.wheel({500, 500}, 1));
    EXPECT_FALSE(fingers.wheel({std::numeric_limits<double>::quiet_NaN(), 0}, 1));
    EXPECT_EQ(heard(), "");
}

} // namespace
} // namespace lamina
