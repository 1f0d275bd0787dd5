// What messages do to the icon, the desktop and the window.
#include "EventPump.h"
#include "TestDesktop.h"
#include "WindowDriver.h"
#include "platform/application/UIApplication.h"
#include "platform/base/MainObserver.h"
#include "platform/host/Application.h"

#include <QGuiApplication>

#include <gtest/gtest.h>
#include <string>

namespace lamina::test {
namespace {

void receive(const std::string& title, int badge)
{
    UIApplication::shared().didReceiveRemoteNotification({"news", title, "", {{"badge", badge}}});
}

TEST(Messages, ReachTheIconAndTheUserWhoBringsTheWindowBack)
{
    TestDesktop desktop;
    int endings = 0;
    const MainObserver ending(UIApplicationWillTerminateNotification, [&] { ++endings; });
    {
        LaunchOptions options;
        options.size = {320, 640};
        WindowDriver driver(options);
        ASSERT_TRUE(runUntil([] { return UIApplication::shared().isActive(); }));
        receive("In front", 3);
        ASSERT_TRUE(runUntil([&] { return desktop.shown().size() == 1 && desktop.badges().size() == 1; }));

        emit qGuiApp->applicationStateChanged(Qt::ApplicationInactive);
        receive("", 4);
        receive("Behind", 5);
        ASSERT_TRUE(runUntil([&] { return desktop.shown().size() == 2 && desktop.badges().size() == 3; }));
        EXPECT_EQ(desktop.shown()[1].title, "Behind");
        EXPECT_EQ(desktop.shown()[1].replaced, desktop.shown()[0].number);

        driver.view().showMinimized();
        desktop.open(QString::number(desktop.shown()[1].number));
        EXPECT_TRUE(runUntil([&] { return (driver.view().windowStates() & Qt::WindowMinimized) == 0; }));
        emit qGuiApp->applicationStateChanged(Qt::ApplicationActive);
        ASSERT_TRUE(runUntil([&] { return desktop.badges().size() == 4; }));
        EXPECT_EQ(desktop.badges(), QList<qlonglong>({3, 4, 5, 0}));
        EXPECT_EQ(endings, 0);
    }
    EXPECT_EQ(endings, 1);
}

} // namespace
} // namespace lamina::test
