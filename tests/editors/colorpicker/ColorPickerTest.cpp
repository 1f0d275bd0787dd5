// The picker between its colours, its controls and whoever asked for it.
#include "editors/colorpicker/InfColorPickerController.h"

#include "editors/colorpicker/InfColorBarPicker.h"
#include "editors/colorpicker/InfColorPickerNavigationController.h"
#include "editors/colorpicker/InfColorSquarePicker.h"
#include "editors/colorpicker/InfColorSquareView.h"
#include "editors/colorpicker/InfSourceColorView.h"
#include "platform/base/DispatchQueue.h"
#include "platform/view/UIBarButtonItem.h"
#include "platform/view/UIWindow.h"

#include <gtest/gtest.h>
#include <memory>
#include <span>
#include <string>
#include <utility>

namespace lamina::test {
namespace {

constexpr UIColor kTeal{0.25, 0.75, 0.5, 1};
constexpr UIColor kRed{1, 0, 0, 1};

struct Heard : InfColorPickerControllerDelegate {
    void colorPickerControllerDidFinish(InfColorPickerController&) override { log += "finish "; }
    bool hearsColorChanges() const override { return hears; }
    void colorPickerControllerDidChangeColor(InfColorPickerController&) override { log += "change "; }
    std::string heard() { return std::exchange(log, {}); }

    std::string log;
    bool hears = true;
};

class ColorPicker : public testing::Test {
protected:
    ColorPicker()
    {
        picker->setDelegate(delegate);
        QObject::connect(picker.get(), &InfColorPickerController::resultColorWillChange,
                         [this] { delegate->log += "will "; });
        QObject::connect(picker.get(), &InfColorPickerController::resultColorDidChange,
                         [this] { delegate->log += "did "; });
    }
    ~ColorPicker() override { DispatchQueue::main().drain(); }

    std::shared_ptr<Heard> delegate = std::make_shared<Heard>();
    std::shared_ptr<InfColorPickerController> picker = InfColorPickerController::colorPickerViewController();
};

TEST_F(ColorPicker, OpensOnItsSourceAndItsControlsMakeColours)
{
    picker->setSourceColor(kTeal);
    EXPECT_EQ(delegate->heard(), "will did change ");
    picker->view();
    EXPECT_EQ(delegate->heard(), "") << "controls that are set tell nothing new";
    EXPECT_EQ(picker->resultColor(), kTeal);
    EXPECT_EQ(picker->sourceColorView()->backgroundColor(), kTeal);
    EXPECT_EQ(picker->resultColorView()->backgroundColor(), kTeal);
    EXPECT_FLOAT_EQ(picker->barPicker()->value(), 5 / 12.0F);
    EXPECT_FLOAT_EQ(static_cast<float>(picker->squarePicker()->value().x), 2 / 3.0F);
    EXPECT_EQ(picker->squarePicker()->value().y, 0.75);
    EXPECT_EQ(picker->shownHexText(), "#40BF80");
    picker->setSourceColor(kTeal);
    picker->setResultColor(kTeal);
    EXPECT_EQ(delegate->heard(), "") << "nothing has changed";
    picker->barPicker()->setValue(0);
    EXPECT_EQ(delegate->heard(), "will did change ");
    EXPECT_EQ(picker->squareView()->hue(), 0);
    EXPECT_EQ(picker->squarePicker()->hue(), 0);
    picker->squarePicker()->setValue({1, 0.5});
    EXPECT_EQ(picker->resultColor(), (UIColor{0.5, 0, 0, 1}));
    EXPECT_EQ(picker->resultColorView()->backgroundColor(), picker->resultColor());
    picker->squarePicker()->setValue({0.58, 0.35}); // in single precision 58 and 34
    EXPECT_EQ(picker->squarePicker()->spokenValue(), "57% saturation, 35% brightness");
    EXPECT_EQ(picker->saturationPercent(), 57);
    EXPECT_EQ(picker->brightnessPercent(), 35);
}

TEST_F(ColorPicker, RedAtEitherEndGreyAndBlackLeaveTheBarAlone)
{
    picker->view();
    picker->barPicker()->setValue(1);
    picker->setResultColor(kRed);
    EXPECT_EQ(picker->barPicker()->value(), 1);
    EXPECT_EQ(picker->squarePicker()->value(), (CGPoint{1, 1}));
    picker->barPicker()->setValue(0.25F);
    const double grey[] = {0.5, 0.9};
    picker->setResultColor(std::span(grey)); // its second component is alpha
    EXPECT_EQ(picker->resultColor(), (UIColor{0.5, 0.5, 0.5, 0.9}));
    EXPECT_EQ(picker->barPicker()->value(), 0.25F);
    EXPECT_EQ(picker->squarePicker()->value(), (CGPoint{0, 0.5}));
    picker->squarePicker()->setValue({0.75, 0.5});
    picker->setResultColor(std::span(grey).first(0));
    picker->setResultColor(UIColor::black());
    EXPECT_EQ(picker->squarePicker()->value(), (CGPoint{0.75, 0}));
    EXPECT_EQ(picker->barPicker()->value(), 0.25F);
}

TEST_F(ColorPicker, IsPresentedInAStackWithDoneAndEndsOnce)
{
    UIWindow window;
    const auto editor = std::make_shared<UIViewController>();
    window.setRootViewController(editor);
    for (const bool finishes : {true, false}) {
        picker->presentModallyOverViewController(*editor);
        DispatchQueue::main().drain();
        const auto stack = picker->navController();
        EXPECT_EQ(editor->presentedViewController(), stack);
        EXPECT_EQ(stack->barStyle(), UIBarStyle::Black);
        EXPECT_EQ(window.topViewController(), picker);
        EXPECT_EQ(picker->rightBarButtonItem()->systemItem(), UIBarButtonSystemItem::Done);
        if (finishes) {
            picker->rightBarButtonItem()->press();
            editor->dismiss(false);
        }
        picker->cancel();
        EXPECT_EQ(editor->presentedViewController(), nullptr);
        picker->done(); // a second press on its way out
        DispatchQueue::main().drain();
        EXPECT_EQ(delegate->heard(), finishes ? "finish " : "");
        stack->setViewControllers({}, false);
        DispatchQueue::main().drain();
    }
}

TEST_F(ColorPicker, NeedsNoDelegateThatHearsOfChanges)
{
    delegate->hears = false;
    picker->setResultColor(kRed);
    picker->setDelegate({});
    picker->setResultColor(kTeal);
    picker->done();
    EXPECT_EQ(delegate->heard(), "will did will did ");
}

TEST_F(ColorPicker, StandsUprightButOnATablet)
{
    const auto stack = InfColorPickerNavigationController::make(picker);
    UIWindow window;
    window.setSize({360, 720});
    window.setRootViewController(stack);
    EXPECT_EQ(stack->supportedInterfaceOrientations(), 6U);
    EXPECT_FALSE(stack->shouldAutorotateToInterfaceOrientation(UIInterfaceOrientation::LandscapeLeft));
    window.setSize({1280, 600});
    DispatchQueue::main().drain();
    EXPECT_EQ(stack->supportedInterfaceOrientations(), 30U);
}

} // namespace
} // namespace lamina::test
