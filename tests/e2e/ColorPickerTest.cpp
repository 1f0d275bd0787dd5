// The colour picker in the window: by finger, by keys, in digits.
#include "WindowTest.h"

#include "app/ViewController.h"
#include "editors/colorpicker/InfColorIndicatorView.h"
#include "editors/colorpicker/InfColorPickerController.h"
#include "editors/colorpicker/InfColorSquarePicker.h"
#include "editors/colorpicker/InfColorSquareView.h"

#include <QAccessible>

#include <cmath>

namespace lamina::test {
namespace {

class Asker : public InfColorPickerControllerDelegate {
public:
    void colorPickerControllerDidFinish(InfColorPickerController& picker) override
    {
        ++answers;
        picker.dismiss(true);
    }
    int answers = 0;
};

class ColorPickerWindow : public WindowTest {
protected:
    void openPicker()
    {
        picker = InfColorPickerController::colorPickerViewController();
        picker->setSourceColor(UIColor::brown());
        picker->setDelegate(asker);
        picker->presentModallyOverViewController(*driver->top<ViewController>());
        ASSERT_TRUE(driver->waitFor<InfColorPickerController>());
    }
    void write(const char* digits)
    {
        for (; *digits != 0; ++digits)
            driver->pressOnly(static_cast<Qt::Key>(*digits));
    }
    void type(const char* digits)
    {
        write(digits);
        driver->press(Qt::Key_Return);
    }

    std::shared_ptr<Asker> asker = std::make_shared<Asker>();
    std::shared_ptr<InfColorPickerController> picker;
};

TEST_F(ColorPickerWindow, TakesTheColourThatTheFingerLiesOn)
{
    open();
    openPicker();
    const CGRect square = picker->squareView()->frame();
    const QPointF start = inWindow({square.midX(), square.midY()});
    driver->drag(start, {square.size.width / 4, -square.size.height / 4});
    const CGPoint value = picker->squarePicker()->value();
    EXPECT_NEAR(value.x, 0.75, 0.01);
    const QPointF place =
        inWindow({square.minX() + value.x * square.size.width, square.minY() + (1 - value.y) * square.size.height}) *
        driver->view().effectiveDevicePixelRatio();
    const UIColor made = *picker->resultColor();
    for (const bool covered : {true, false}) { // by the indicator, in whose place the field has the same colour
        const QColor color = driver->grab().pixelColor(place.toPoint());
        EXPECT_NEAR(color.red(), made.red * 255, 3) << covered;
        EXPECT_NEAR(color.green(), made.green * 255, 3) << covered;
        EXPECT_NEAR(color.blue(), made.blue * 255, 3) << covered;
        picker->squarePicker()->indicator()->setHidden(true);
        driver->settle();
    }
    driver->press(Qt::Key_Left); // where the finger was
    EXPECT_NEAR(picker->saturation(), value.x - 0.01, 1e-6);
    ASSERT_TRUE(driver->tap(QStringLiteral("Before")));
    EXPECT_EQ(picker->resultColor(), UIColor::brown());
    EXPECT_TRUE(driver->tap(QStringLiteral("Done")));
    EXPECT_EQ(asker->answers, 1);
}

TEST_F(ColorPickerWindow, IsWorkedByKeysAlone)
{
    open();
    openPicker();
    std::string order;
    const auto tab = [&] {
        driver->press(Qt::Key_Tab);
        order += driver->ringedName().toStdString() + "|";
    };
    tab();
    const float brightness = picker->brightness();
    driver->press(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_NEAR(picker->brightness(), brightness - 0.1, 1e-6);
    tab();
    const float hue = picker->hue();
    driver->press(Qt::Key_Right);
    EXPECT_NEAR(picker->hue(), hue + 0.01, 1e-6);
    tab();
    driver->press(Qt::Key_Space);
    EXPECT_EQ(picker->resultColor(), UIColor::brown());
    tab();
    const QQuickItem* const field = driver->called(QStringLiteral("hex"));
    type("7G");
    EXPECT_TRUE(field->property("wrong").toBool());
    EXPECT_EQ(field->property("text"), "#996633") << "the former digits are given back";
    EXPECT_EQ(picker->resultColor(), UIColor::brown());
    type("0F0");
    EXPECT_FALSE(field->property("wrong").toBool());
    EXPECT_EQ(picker->resultColor(), (UIColor{0, 1, 0, 1}));
    tab();
    tab();
    EXPECT_EQ(order, "Saturation and brightness|Hue|Before|Color in digits|Close|Done|");
    driver->press(Qt::Key_Escape);
    EXPECT_TRUE(driver->waitFor<ViewController>());
    EXPECT_EQ(asker->answers, 0) << "nobody hears of one who leaves";
}

TEST_F(ColorPickerWindow, DoneTakesWhatIsWrittenOrSaysThatItCant)
{
    open();
    openPicker();
    const QQuickItem* const field = driver->called(QStringLiteral("hex"));
    ASSERT_TRUE(driver->tap(QStringLiteral("Color in digits")));
    write("12");
    ASSERT_TRUE(driver->tap(QStringLiteral("Done")));
    EXPECT_EQ(asker->answers, 0);
    EXPECT_TRUE(field->property("wrong").toBool());
    EXPECT_TRUE(field->hasActiveFocus());
    EXPECT_EQ(picker->resultColor(), UIColor::brown());
    write("0F0");
    QQuickItem* const button = driver->item(QStringLiteral("Done"));
    ASSERT_NE(button, nullptr);
    QAccessibleInterface* const done = QAccessible::queryAccessibleInterface(button);
    done->actionInterface()->doAction(QAccessibleActionInterface::pressAction()); // without the focus
    EXPECT_EQ(asker->answers, 1);
    EXPECT_EQ(picker->resultColor(), (UIColor{0, 1, 0, 1}));
    EXPECT_TRUE(driver->waitFor<ViewController>());

    openPicker();
    ASSERT_TRUE(driver->tap(QStringLiteral("Color in digits")));
    type("7G");
    ASSERT_TRUE(driver->click(QStringLiteral("Done")));
    EXPECT_EQ(asker->answers, 1);
    ASSERT_TRUE(driver->click(QStringLiteral("Done")));
    EXPECT_EQ(asker->answers, 2) << "with the colour that is shown, which one has seen by now";
}

} // namespace
} // namespace lamina::test
