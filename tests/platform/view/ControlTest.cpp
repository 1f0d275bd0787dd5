#include "TouchBench.h"

#include "platform/view/UIAccessibility.h"
#include "platform/view/UIButton.h"
#include "platform/view/UITouch.h"

namespace lamina::test {
namespace {

using Events = UIControlEvents;

class ControlTest : public TouchBench {
protected:
    ControlTest() { listen(*button); }

    void listen(UIControl& control)
    {
        const std::pair<Events::Set, const char*> names[] = {
            {Events::TouchDown, "down "},           {Events::TouchDragInside, "inside "},
            {Events::TouchDragOutside, "outside "}, {Events::TouchDragEnter, "enter "},
            {Events::TouchDragExit, "exit "},       {Events::TouchUpInside, "up "},
            {Events::TouchUpOutside, "away "},      {Events::TouchCancel, "cancel "},
        };
        for (const auto& [event, name] : names)
            control.addTarget([this, text = name](UIControl&) { log += text; }, event);
    }

    std::shared_ptr<UIButton> button = addView<UIButton>({100, 100, 80, 44});
};

TEST_F(ControlTest, FollowsAFinger)
{
    EXPECT_EQ(play("1+110,110 1>120,110"), "down inside ");
    EXPECT_TRUE(button->isHighlighted());
    EXPECT_EQ(play("1>249,110 1>250,110 1>310,110"), "inside exit outside outside "); // 70 points of slack
    EXPECT_FALSE(button->isHighlighted() || button->isTouchInside() || !button->isTracking());
    EXPECT_EQ(play("1>130,110 1-130,110"), "enter inside up ");
    EXPECT_EQ(play("1+110,110 1-10,10"), "down exit outside away "); // the way out and the end in one event
    EXPECT_EQ(play("1+110,110 2+120,120 1>111,110&2>9,9 2-9,9 1x"), "down inside cancel "); // the second is no matter

    button->setEnabled(false);
    EXPECT_EQ(play("t110,110"), "");
    button->sendActions(Events::TouchUpInside);
    button->setEnabled(true);
    EXPECT_EQ(play("1+110,110"), "up down ");
    button->setEnabled(false);
    button->setEnabled(true);
    EXPECT_EQ(play("1-110,110"), "cancel ");
}

/// Says what it is asked, and whether the finger counts as inside by then.
struct Follower : UIControl {
    using UIControl::UIControl;
    bool beginTracking(const UITouch& touch) override
    {
        return tell("begin " + text(touch.locationInView(this))) && begins;
    }
    bool continueTracking(const UITouch& touch) override
    {
        return tell("to " + text(touch.locationInView(this))) && goesOn;
    }
    void endTracking(const UITouch&) override { tell("end"); }
    void cancelTracking() override { tell("lost"); }
    bool tell(const std::string& what) { return *log += what + (isTouchInside() ? "* " : " "), true; }
    std::string* log = nullptr;
    bool begins = true;
    bool goesOn = true;
};

TEST_F(ControlTest, SubclassesFollowTheFingerBeforeHandlersHear)
{
    const auto follower = addView<Follower>({200, 200, 80, 44});
    follower->log = &log;
    listen(*follower);
    EXPECT_EQ(play("1+210,210 1>220,210 1>399,210 1-399,220"),
              "begin 10,10 down to 20,10* inside to 199,10 exit outside to 199,20 outside end away ");
    EXPECT_EQ(play("1+210,210 2+211,211 2-211,211 1-210,210 1+210,210 1x"),
              "begin 10,10 down end* up begin 10,10 down lost cancel ");
    follower->goesOn = false;
    EXPECT_EQ(play("1+210,210 1>220,210 1>230,210 1-230,210"), "begin 10,10 down to 20,10* ");
    EXPECT_FALSE(follower->isHighlighted() || follower->isTracking());
    follower->begins = false;
    EXPECT_EQ(play("d210,210>220,210"), "begin 10,10 ");
}

TEST_F(ControlTest, TellsAssistiveTechnologyWhatItIs)
{
    using Traits = UIAccessibilityTraits;
    EXPECT_TRUE(button->isAccessibilityElement() && !root->isAccessibilityElement());
    button->setTitle("Reset");
    EXPECT_EQ(button->accessibilityLabel(), "Reset");
    button->setAccessibilityLabel("Reset the colour");
    EXPECT_EQ(button->accessibilityLabel(), "Reset the colour");
    EXPECT_TRUE(button->accessibilityActivate());
    EXPECT_EQ(play(""), "up ");
    button->setAccessibilityTraits(Traits::Adjustable);
    button->setSelected(true);
    button->setEnabled(false);
    EXPECT_EQ(button->accessibilityTraits(),
              Traits::Adjustable | Traits::Button | Traits::Selected | Traits::NotEnabled);
    EXPECT_FALSE(button->accessibilityActivate());
    EXPECT_EQ(play(""), "");
}

TEST_F(ControlTest, WhatIsDraggedBesideItIsNotDraggedThroughIt)
{
    root->fallback = child.get();
    attach("child/pan");
    attach("child/pinch");
    EXPECT_FALSE(fingers.wheel({110, 110}, 1));
    EXPECT_EQ(fingers.pointerShape({110, 110}), UIPointerShape::Arrow);
    EXPECT_EQ(play("d110,110>130,110"), "down inside up ");
}

TEST_F(ControlTest, GesturesAroundItTakeDragsButNoTaps)
{
    attach("tap");
    attach("pan");
    EXPECT_EQ(play("t110,110 t10,10 d110,110>130,110"), "down up tap. down cancel pan+0,0 pan.0,0 ");
}

TEST_F(ControlTest, HandlersMayRemoveHandlersAndTheControl)
{
    UIControl::HandlerId second = 0;
    button->addTarget([&](UIControl& control) { control.removeTarget(second); }, Events::ValueChanged);
    second = button->addTarget([this](UIControl&) { log += "second "; }, Events::ValueChanged);
    button->sendActions(Events::ValueChanged);
    EXPECT_EQ(play(""), "");
    button->addTarget(
        [this](UIControl&) {
            button->removeFromSuperview();
            button.reset();
        },
        Events::TouchDragExit);
    EXPECT_EQ(play("d110,110>10,10").substr(0, 10), "down exit ");
    EXPECT_EQ(button, nullptr);
}

} // namespace
} // namespace lamina::test
