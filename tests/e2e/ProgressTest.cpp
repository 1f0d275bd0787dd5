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
    const auto colorAt = [this](int x, int y) {
        const QImage window = driver->grab();
        const double scale = double(window.width()) / driver->view().width();
        return window.pixelColor(static_cast<int>(x * scale), static_cast<int>(y * scale));
    };
    const QColor ground = colorAt(2, kHeight / 2);
    const auto there = [this] { return driver->called(QStringLiteral("progress")) != nullptr; };
    EXPECT_FALSE(there());
    std::string log;
    SVProgressHUD::setDefaultMaskType(4);
    SVProgressHUD::showWithStatus("Please Wait...");
    SVProgressHUD::setCancelAction([&] { log += "cancelled "; });
    ASSERT_TRUE(WindowDriver::waitUntil([&] { return driver->item(QStringLiteral("Please Wait...")) != nullptr; }));
    driver->settle();
    EXPECT_EQ(colorAt(kWidth / 2 - 70, kHeight / 2), QColor(233, 233, 233));
    EXPECT_LT(colorAt(2, kHeight / 2).lightness(), ground.lightness()) << "the second dark";
    EXPECT_TRUE(WindowDriver::waitUntil([&] { return driver->focusedName() == "Cancel"; }, 5));
    driver->press(Qt::Key_F1);
    driver->tap(QStringLiteral("Blend"));
    EXPECT_TRUE(driver->top<ViewController>()) << "nothing reaches the screen below";
    driver->press(Qt::Key_Escape);
    EXPECT_EQ(log, "cancelled ");

    SVProgressHUD::showFailure({"sea.pdf", "no space left"}, [&] { log += "closed"; });
    ASSERT_TRUE(WindowDriver::waitUntil([&] { return driver->item(QStringLiteral("Close")) != nullptr; }));
    driver->settle();
    EXPECT_TRUE(driver->item(QStringLiteral("sea.pdf: no space left.")));
    EXPECT_TRUE(WindowDriver::waitUntil([&] { return driver->focusedName() == "Close"; }, 5));
    driver->view().resize(kHeight, kWidth);
    EXPECT_TRUE(WindowDriver::waitUntil([&] { return colorAt(kHeight / 2, kWidth / 2 - 50) == QColor(233, 233, 233); }))
        << "it stays in the middle";
    driver->press(Qt::Key_Return);
    EXPECT_EQ(log, "cancelled closed");
    EXPECT_TRUE(WindowDriver::waitUntil([&] { return !there(); }));
    EXPECT_TRUE(driver->tap(QStringLiteral("Blend")));
    EXPECT_TRUE(driver->waitFor<ImagePIckingViewController>());
}

} // namespace
} // namespace lamina::test
