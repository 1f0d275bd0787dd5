#include "TouchBench.h"

#include "platform/view/UIButton.h"
#include "platform/view/UIPanGestureRecognizer.h"
#include "platform/view/UITapGestureRecognizer.h"

namespace lamina {
namespace {

using Events = UIControlEvents;

class ControlTest : public test::TouchBench {
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

    std::shared_ptr<UIButton> button = addView<UIButton>(*root, {100, 100, 80, 44});
};

TEST_F(ControlTest, FollowsAFinger)
{
    down(1, 110, 110);
    EXPECT_TRUE(button->isTracking() && button->isHighlighted());
    move(1, 120, 110);
    move(1, 300, 110);
    EXPECT_TRUE(button->isTracking());
    EXPECT_FALSE(button->isHighlighted());
    move(1, 310, 110);
    move(1, 130, 110);
    EXPECT_TRUE(button->isHighlighted());
    up(1, 130, 110);
    EXPECT_EQ(heard(), "down inside exit outside outside enter inside up ");
    EXPECT_FALSE(button->isTracking() || button->isHighlighted());
    down(1, 110, 110);
    up(1, 10, 10); // the way out and the end in one event
    EXPECT_EQ(heard(), "down exit outside away ");
    down(1, 110, 110);
    fingers.touchCancelled(1, tick());
    EXPECT_EQ(heard(), "down cancel ");
}

TEST_F(ControlTest, DisabledControlsTakeNoTouches)
{
    button->setEnabled(false);
    tap(110, 110);
    EXPECT_EQ(heard(), "");
    button->sendActions(Events::TouchUpInside);
    EXPECT_EQ(heard(), "up ");
    button->setEnabled(true);
    down(1, 110, 110);
    button->setEnabled(false);
    EXPECT_EQ(heard(), "down cancel ");
    button->setEnabled(true);
    up(1, 110, 110);
    EXPECT_EQ(heard(), "");
}

TEST_F(ControlTest, GesturesAroundItTakeDragsButNoTaps)
{
    const auto outerTap = attach<UITapGestureRecognizer>(*root, "tap");
    const auto outerPan = attach<UIPanGestureRecognizer>(*root, "pan");
    tap(110, 110);
    EXPECT_EQ(heard(), "down up ");
    tap(10, 10);
    EXPECT_EQ(heard(), "tap:ended ");
    down(1, 110, 110);
    move(1, 130, 110);
    up(1, 130, 110);
    EXPECT_EQ(heard(), "down cancel pan:began pan:ended ");
}

TEST_F(ControlTest, HandlersMayRemoveHandlersAndTheControl)
{
    UIControl::HandlerId second = 0;
    button->addTarget([&](UIControl& control) { control.removeTarget(second); }, Events::ValueChanged);
    second = button->addTarget([this](UIControl&) { log += "second "; }, Events::ValueChanged);
    button->sendActions(Events::ValueChanged);
    EXPECT_EQ(heard(), "");
    button->addTarget(
        [this](UIControl&) {
            button->removeFromSuperview();
            button.reset();
        },
        Events::TouchDragExit);
    down(1, 110, 110);
    move(1, 10, 10);
    up(1, 10, 10);
    EXPECT_EQ(button, nullptr);
    EXPECT_EQ(heard().substr(0, 10), "down exit ");
}

} // namespace
} // namespace lamina
