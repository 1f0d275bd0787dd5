#include "TouchBench.h"

#include "platform/view/UIButton.h"

namespace lamina::test {
namespace {

using Events = UIControlEvents;

class ControlTest : public TouchBench {
protected:
    ControlTest()
    {
        const std::pair<Events::Set, const char*> names[] = {
            {Events::TouchDown, "down "},           {Events::TouchDragInside, "inside "},
            {Events::TouchDragOutside, "outside "}, {Events::TouchDragEnter, "enter "},
            {Events::TouchDragExit, "exit "},       {Events::TouchUpInside, "up "},
            {Events::TouchUpOutside, "away "},      {Events::TouchCancel, "cancel "},
        };
        for (const auto& [event, name] : names)
            button->addTarget([this, text = name](UIControl&) { log += text; }, event);
    }

    std::shared_ptr<UIButton> button = addView<UIButton>({100, 100, 80, 44});
};

TEST_F(ControlTest, FollowsAFinger)
{
    EXPECT_EQ(play("1+110,110 1>120,110"), "down inside ");
    EXPECT_TRUE(button->isHighlighted());
    EXPECT_EQ(play("1>300,110 1>310,110"), "exit outside outside ");
    EXPECT_FALSE(button->isHighlighted());
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
