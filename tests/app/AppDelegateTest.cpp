#include "app/AppDelegate.h"

#include "LogCapture.h"
#include "platform/base/DispatchQueue.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace lamina::test {
namespace {

/// What serves the application, recording what it is asked in order.
class RecordingServices : public MessagingService, public NotificationService {
public:
    RecordingServices()
    {
        FIRMessaging::messaging().setService(this);
        UNUserNotificationCenter::currentNotificationCenter().setService(this);
        UIApplication::shared().setBadgeSetter([this](int number) { badges.push_back(number); });
    }
    ~RecordingServices() override
    {
        FIRMessaging::messaging().setService(nullptr);
        UNUserNotificationCenter::currentNotificationCenter().setService(nullptr);
        UIApplication::shared().setApplicationIconBadgeNumber(0);
        UIApplication::shared().setBadgeSetter({});
    }

    void configure() override
    {
        EXPECT_EQ(FIRMessaging::messaging().delegate(), nullptr);
        calls.emplace_back("configure");
    }
    void registerForRemoteNotifications() override { calls.emplace_back("register"); }
    void setAPNSToken(const std::vector<std::uint8_t>& given) override { token = given; }
    void requestAuthorization(UNAuthorizationOptions options, std::function<void(bool granted)> completion) override
    {
        // Both delegates are there by now.
        EXPECT_NE(FIRMessaging::messaging().delegate(), nullptr);
        UNUserNotificationCenter::currentNotificationCenter().willPresent({});
        calls.push_back("authorization " + std::to_string(options));
        completion(false);
    }
    void present(const UNNotification& notification, UNNotificationPresentationOptions options) override
    {
        calls.push_back("present " + notification.title + " " + std::to_string(options));
    }

    std::vector<std::string> calls;
    std::vector<int> badges;
    std::vector<std::uint8_t> token;
};

class ApplicationsDelegate : public testing::Test {
protected:
    ApplicationsDelegate() { application.setDelegate(delegate); }
    ~ApplicationsDelegate() override
    {
        application.setActive(false);
        DispatchQueue::main().runUntilIdle(1);
    }

    /// Calls the delegate itself as on one of the three roads, and gives how often it called the handler.
    int tell(int road, const nlohmann::json& userInfo)
    {
        UNUserNotificationCenter& center = UNUserNotificationCenter::currentNotificationCenter();
        const UNNotification notification{"id", "", "", userInfo};
        int handled = 0;
        if (road == 0)
            delegate->didReceiveRemoteNotification(application, notification,
                                                   [&](UIBackgroundFetchResult) { ++handled; });
        else if (road == 1)
            delegate->userNotificationCenter(center, notification, [&](UNNotificationPresentationOptions options) {
                ++handled;
                EXPECT_EQ(options, 19u);
            });
        else
            delegate->userNotificationCenter(center, UNNotificationResponse{notification}, [&] { ++handled; });
        return handled;
    }

    RecordingServices services;
    UIApplication& application = UIApplication::shared();
    const std::shared_ptr<AppDelegate> delegate = AppDelegate::make();
};

TEST_F(ApplicationsDelegate, LaunchesInOrder)
{
    EXPECT_TRUE(application.didFinishLaunching());
    EXPECT_EQ(services.calls, (std::vector<std::string>{"configure", "present  19", "authorization 7", "register"}));
    EXPECT_TRUE(services.badges.empty());

    application.didRegisterForRemoteNotifications({1, 2, 255});
    EXPECT_EQ(services.token, (std::vector<std::uint8_t>{1, 2, 255}));
    const LogCapture log;
    application.didFailToRegisterForRemoteNotifications({"distributor", "refuses"});
    EXPECT_EQ(log.text(), "Unable to register for remote notifications: distributor: refuses\n");
}

TEST_F(ApplicationsDelegate, PutsTheNumberOfAMessageOnTheIconOnAllRoads)
{
    using nlohmann::json;
    constexpr int kStood = 7, kMost = 99'999;
    const struct {
        json userInfo;
        int shown;
    } table[] = {
        {{{"badge", 5}}, 5},
        {{{"badge", 5.9}}, 5},
        {{{"badge", 0}}, 0},
        {{{"badge", -3}}, 0},
        {{{"badge", -0.5}}, 0},
        {{{"badge", std::numeric_limits<std::int64_t>::min()}}, 0},
        {{{"badge", std::numeric_limits<std::uint64_t>::max()}}, kMost},
        {{{"badge", 1e300}}, kMost},
        {{{"badge", std::numeric_limits<double>::infinity()}}, kMost},
        {{{"badge", std::nan("")}}, kStood},
        {{{"badge", "5"}}, kStood},
        {{{"badge", true}}, kStood},
        {{{"badge", nullptr}}, kStood},
        {{{"badge", {5}}}, kStood},
        {{{"Badge", 5}}, kStood},
        {json::array({5}), kStood},
        {nullptr, kStood},
    };
    for (const auto& c : table) {
        for (int road = 0; road < 3; ++road) {
            application.setApplicationIconBadgeNumber(kStood);
            // Whoever waits for the end of a fetch is never told.
            EXPECT_EQ(tell(road, c.userInfo), road == 0 ? 0 : 1) << c.userInfo << " on road " << road;
            EXPECT_EQ(application.applicationIconBadgeNumber(), c.shown) << c.userInfo << " on road " << road;
        }
    }
}

TEST_F(ApplicationsDelegate, ClearsTheIconWheneverTheApplicationComesToTheFront)
{
    application.didFinishLaunching();
    services.calls.clear();
    const auto receive = [&](const std::string& title, int badge) {
        application.didReceiveRemoteNotification({"", title, "", {{"badge", badge}}});
    };
    receive("", 5);
    receive("asleep", 6);
    application.setActive(true);
    application.setActive(true);
    receive("", 7);
    receive("awake", 8);
    application.setActive(false);
    application.setActive(true);
    EXPECT_EQ(services.badges, (std::vector{5, 6, 0, 7, 8, 0}));
    EXPECT_EQ(services.calls, (std::vector<std::string>{"present asleep 19", "present awake 19"}));
}

} // namespace
} // namespace lamina::test
