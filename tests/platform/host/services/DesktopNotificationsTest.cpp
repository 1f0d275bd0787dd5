#include "platform/host/services/DesktopNotifications.h"

#include "Environment.h"
#include "EventPump.h"
#include "LogCapture.h"
#include "TestDesktop.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace lamina::test {
namespace {

constexpr UNNotificationPresentationOptions kAll = UNNotificationPresentationOptionBadge |
                                                   UNNotificationPresentationOptionSound |
                                                   UNNotificationPresentationOptionBanner;

/// Hears of what the user opens.
class Listener : public UNUserNotificationCenterDelegate {
public:
    void userNotificationCenter(UNUserNotificationCenter&, const UNNotification&,
                                const std::function<void(UNNotificationPresentationOptions)>&) override
    {
    }
    void userNotificationCenter(UNUserNotificationCenter&, const UNNotificationResponse& response,
                                const std::function<void()>& completionHandler) override
    {
        opened.push_back(response.notification.userInfo["n"].get<int>());
        completionHandler();
    }
    std::vector<int> opened;
};

class Notifications : public testing::Test {
protected:
    using Way = NotificationWay;

    Notifications() { UNUserNotificationCenter::currentNotificationCenter().setDelegate(listener); }

    /// Wires the tokens of `notifications` to this.
    void follow(DesktopNotifications& notifications)
    {
        QObject::connect(&notifications, &DesktopNotifications::opened,
                         [this](const QString& token) { tokens.append(token); });
    }
    static UNNotification make(int n, const std::string& identifier = {})
    {
        return {identifier, "Title " + std::to_string(n), "Body", {{"n", n}}};
    }
    static bool wait(const TestDesktop& desktop, std::size_t count)
    {
        return runUntil([&] { return desktop.shown().size() >= count; });
    }
    static QString nameOf(const TestDesktop::Shown& shown)
    {
        return shown.identifier.isEmpty() ? QString::number(shown.number) : shown.identifier;
    }

    const std::shared_ptr<Listener> listener = std::make_shared<Listener>();
    QStringList tokens;
};

TEST_F(Notifications, AreShownReplacedAndOpenedByServiceAndPortal)
{
    for (const Way way : {Way::Service, Way::Portal}) {
        SCOPED_TRACE(way == Way::Service ? "service" : "portal");
        TestDesktop desktop(way == Way::Service ? TestDesktop::Kind::Service : TestDesktop::Kind::Portal);
        ASSERT_TRUE(desktop.isRunning());
        listener->opened.clear();
        tokens.clear();
        DesktopNotifications notifications(sessionBus, way);
        follow(notifications);
        notifications.present(make(1, "one"), kAll);
        notifications.present(make(2, "two"), kAll & ~UNNotificationPresentationOptionSound);
        notifications.present(make(3, "three"), kAll & ~UNNotificationPresentationOptionBanner);
        ASSERT_TRUE(wait(desktop, 2));
        notifications.present(make(4, "one"), kAll);
        ASSERT_TRUE(wait(desktop, 3));
        const auto& shown = desktop.shown();
        EXPECT_EQ(shown[0].title, "Title 1");
        EXPECT_EQ(shown[2].title, "Title 4");
        EXPECT_EQ(nameOf(shown[2]), nameOf(shown[0]));
        EXPECT_NE(nameOf(shown[1]), nameOf(shown[0]));
        if (way == Way::Service) {
            EXPECT_EQ(shown[0].options["desktop-entry"], "org.lamina.lamina");
            EXPECT_TRUE(shown[0].options.contains("sound-name"));
            EXPECT_EQ(shown[1].options["suppress-sound"], true);
            EXPECT_EQ(shown[0].actions, QStringList({"default", "Open"}));
            EXPECT_EQ(desktop.capabilitiesAsked(), 1);
        } else {
            EXPECT_EQ(shown[0].options["default-action"], "default");
            EXPECT_FALSE(shown[0].options.contains("sound"));
            EXPECT_EQ(shown[1].options["sound"], "silent");
        }

        desktop.open(nameOf(shown[0]), "token 1", "another action");
        desktop.open(nameOf(shown[1]), "token 2");
        desktop.open(nameOf(shown[0]), QString(100'000, 'x'));
        ASSERT_TRUE(runUntil([&] { return tokens.size() == 2; }));
        EXPECT_EQ(listener->opened, std::vector({2, 4}));
        EXPECT_EQ(tokens[0], "token 2");
        EXPECT_EQ(tokens[1], "");
        EXPECT_TRUE(runUntil([&] { return desktop.withdrawn().size() == 2; }));
        desktop.open("left by an earlier run");
        // The portal tells nobody else of it.
        EXPECT_TRUE(way == Way::Service || runUntil([&] { return tokens.size() == 3; }));
        EXPECT_EQ(listener->opened.size(), 2u);
    }
}

TEST_F(Notifications, OfOthersAndThoseSweptAwayAreNotOpened)
{
    TestDesktop desktop;
    DesktopNotifications notifications;
    follow(notifications);
    notifications.present(make(1), kAll);
    notifications.present(make(2), kAll);
    ASSERT_TRUE(wait(desktop, 2));
    desktop.open("77");
    desktop.open("0");
    desktop.sweep(1);
    desktop.open("1");
    desktop.open("2");
    ASSERT_TRUE(runUntil([&] { return !tokens.isEmpty(); }));
    EXPECT_EQ(listener->opened, std::vector({2}));
}

TEST_F(Notifications, AreBoundedInNumberAndOutliveTheirService)
{
    auto desktop = std::make_unique<TestDesktop>();
    const LogCapture log;
    DesktopNotifications notifications;
    const int count = DesktopNotifications::kMostOpen + 3;
    for (int i = 0; i < count; ++i)
        notifications.present(make(i), kAll);
    // Those that were too many before anybody was there to show them are not shown at all.
    ASSERT_TRUE(wait(*desktop, DesktopNotifications::kMostOpen));
    notifications.present(make(count), kAll);
    // Whichever comes first: the oldest one may not have been answered for yet.
    ASSERT_TRUE(wait(*desktop, DesktopNotifications::kMostOpen + 1));
    ASSERT_TRUE(runUntil([&] { return desktop->withdrawn() == QStringList("1"); }));
    EXPECT_EQ(desktop->shown().front().title, "Title 3");

    EXPECT_TRUE(notifications.needsProcess());
    desktop->vanish();
    ASSERT_TRUE(runUntil([&] { return !notifications.needsProcess(); }));
    desktop = std::make_unique<TestDesktop>();
    ASSERT_TRUE(desktop->isRunning());
    desktop->setCapabilities({});
    follow(notifications);
    notifications.present(make(count, "new"), kAll);
    ASSERT_TRUE(wait(*desktop, 1));
    EXPECT_EQ(desktop->shown()[0].replaced, 0u);
    EXPECT_TRUE(desktop->shown()[0].actions.isEmpty()) << "the new service has other capabilities";
    desktop->open("1");
    ASSERT_TRUE(runUntil([&] { return tokens.size() == 1; }));
    EXPECT_EQ(listener->opened, std::vector({count}));
    EXPECT_LE(log.messages.size(), 1u);
}

TEST_F(Notifications, WaitForASlowServiceWithTheNewestOfEach)
{
    TestDesktop desktop;
    desktop.hesitate();
    DesktopNotifications notifications;
    for (int i = 0; i < 10; ++i)
        notifications.present(make(i, "one"), kAll);
    ASSERT_TRUE(wait(desktop, 1));
    for (int i = 10; i < 20; ++i)
        notifications.present(make(i, "one"), kAll);
    runFor(20);
    EXPECT_EQ(desktop.shown().size(), 1u);
    desktop.answer();
    ASSERT_TRUE(wait(desktop, 2));
    EXPECT_EQ(desktop.shown()[1].title, "Title 19");
    EXPECT_EQ(desktop.shown()[1].replaced, desktop.shown()[0].number);
}

TEST_F(Notifications, ThatNobodyShowsCostOneLineAtMost)
{
    struct Case {
        const char* name;
        Way way;
        bool isThere;
        bool hasBus;
        std::size_t lines;
    };
    for (const Case& c :
         {Case{"no bus", Way::Service, false, false, 0}, Case{"no service", Way::Service, false, true, 1},
          Case{"no portal", Way::Portal, false, true, 1}, Case{"it refuses", Way::Service, true, true, 1}}) {
        SCOPED_TRACE(c.name);
        const LogCapture log;
        std::unique_ptr<TestDesktop> desktop;
        if (c.isThere) {
            desktop = std::make_unique<TestDesktop>();
            desktop->refuse();
        }
        DesktopNotifications notifications(
            c.hasBus ? BusConnector(sessionBus) : [] { return QDBusConnection(QStringLiteral("none")); }, c.way);
        notifications.present(make(1), kAll);
        notifications.present(make(2), kAll);
        ASSERT_TRUE(runUntil([&] { return log.messages.size() >= c.lines; }));
        runFor(20);
        ASSERT_EQ(log.messages.size(), c.lines);
        EXPECT_LE(log.text().size(), 4096u);
        EXPECT_EQ(std::ranges::count(log.text(), '\n'), static_cast<std::ptrdiff_t>(c.lines)) << "no line is forged";
        EXPECT_FALSE(notifications.needsProcess());
    }
}

TEST_F(Notifications, ShowNoMarkupNoControlsAndNotTooMuch)
{
    const std::string nasty = "<b>&\x1b[31m\xE2\x80\xAE\xff\n" + std::string("\0", 1) + "\xC3\xA4";
    const QString harmless = QStringLiteral(u"\uFFFD[31m\uFFFD\uFFFD%1\uFFFDä");
    const struct {
        std::string title, body;
        QStringList capabilities;
        QString shownTitle, shownBody;
    } table[] = {
        {nasty, nasty, {"body-markup"}, "<b>&" + harmless.arg(' '), "&lt;b&gt;&amp;" + harmless.arg('\n')},
        {nasty, nasty, {}, "<b>&" + harmless.arg(' '), "<b>&" + harmless.arg('\n')},
        {"", "body", {}, "Lamina", "body"},
        {std::string(200, 'a'),
         std::string(1000, '<'),
         {"body-markup"},
         QString(200, 'a'),
         QString("&lt;").repeated(1000)},
        {std::string(100'000, 'a'),
         std::string(100'000, '\xff'),
         {},
         QString(199, 'a') + u'…',
         QString(999, QChar(0xFFFD)) + u'…'},
    };
    for (const auto& c : table) {
        TestDesktop desktop;
        desktop.setCapabilities(c.capabilities);
        DesktopNotifications notifications;
        notifications.present({"", c.title, c.body, {}}, kAll);
        ASSERT_TRUE(wait(desktop, 1));
        EXPECT_EQ(desktop.shown()[0].title, c.shownTitle) << c.title.size();
        EXPECT_EQ(desktop.shown()[0].body, c.shownBody) << c.title.size();
    }
}

TEST(NotificationWays, AreChosenByTheSandboxAndTheUser)
{
    const Variable snap("SNAP_INSTANCE_NAME", "");
    Variable wish("LAMINA_NOTIFICATIONS", "");
    EXPECT_EQ(notificationWay(), NotificationWay::Service);
    {
        const Variable inside("SNAP_INSTANCE_NAME", "lamina");
        EXPECT_EQ(notificationWay(), NotificationWay::Portal);
        wish.set("service");
        EXPECT_EQ(notificationWay(), NotificationWay::Service);
    }
    wish.set("portal");
    EXPECT_EQ(notificationWay(), NotificationWay::Portal);
}

} // namespace
} // namespace lamina::test
