// The panel of work under way, in the window.
#include "WindowTest.h"

#include "app/ViewController.h"
#include "hud/SVProgressHUD.h"

#include <QColor>
#include <Qt>

namespace lamina::test {
namespace {

TEST_F(WindowTest, ThePanelOfWorkLiesOverTheScreenAndTakesKeysAndTouches)
{
    open();
    const QColor ground = driver->grab().pixelColor(2, kHeight / 2);
    const auto panelColor = [this] { return driver->grab().pixelColor(kWidth / 2 - 70, kHeight / 2); };
    const auto there = [this] { return driver->called(QStringLiteral("progress")) != nullptr; };
    EXPECT_FALSE(there());
    std::string log;
    SVProgressHUD::setDefaultMaskType(4);
    SVProgressHUD::showWithStatus("Please Wait...");
    SVProgressHUD::setCancelAction([&] { log += "cancelled "; });
    ASSERT_TRUE(WindowDriver::waitUntil([&] { return driver->item(QStringLiteral("Please Wait...")) != nullptr; }));
    driver->settle();
    EXPECT_EQ(panelColor(), QColor(233, 233, 233));
    EXPECT_LT(driver->grab().pixelColor(2, kHeight / 2).lightness(), ground.lightness()) << "the second dark";
    EXPECT_EQ(driver->focusedName(), "Cancel");
    driver->press(Qt::Key_F1);
    driver->tap(QStringLiteral("Blend"));
    EXPECT_TRUE(driver->top<ViewController>()) << "nothing reaches the screen below";
    driver->press(Qt::Key_Escape);
    EXPECT_EQ(log, "cancelled ");

    SVProgressHUD::showFailure({"sea.pdf", "no space left"}, [&] { log += "closed"; });
    ASSERT_TRUE(WindowDriver::waitUntil([&] { return driver->item(QStringLiteral("Close")) != nullptr; }));
    driver->settle();
    EXPECT_TRUE(driver->item(QStringLiteral("sea.pdf: no space left.")));
    EXPECT_EQ(driver->focusedName(), "Close");
    driver->view().resize(kHeight, kWidth);
    EXPECT_TRUE(WindowDriver::waitUntil([&] {
        return driver->grab().pixelColor(kHeight / 2, kWidth / 2 - 40) == QColor(233, 233, 233);
    })) << "it stays in the middle";
    driver->press(Qt::Key_Return);
    EXPECT_EQ(log, "cancelled closed");
    EXPECT_TRUE(WindowDriver::waitUntil([&] { return !there(); }));
    EXPECT_TRUE(driver->tap(QStringLiteral("Blend")));
    EXPECT_TRUE(driver->waitFor<ImagePIckingViewController>());
}

} // namespace
} // namespace lamina::test
