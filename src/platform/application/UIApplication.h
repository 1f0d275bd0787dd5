#pragma once

#include "platform/application/UIApplicationDelegate.h"
#include "platform/application/UNNotification.h"
#include "platform/base/Result.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace lamina {

/// Opens the system's settings for this application.
inline constexpr const char* UIApplicationOpenSettingsURLString = "app-settings:";

/// Posted when the application is about to leave, with its screens still there: the moment to keep what must not be
/// lost. Leaving waits, for some seconds at most, until the main queue is idle. Main thread, without a sender.
inline constexpr const char* UIApplicationWillTerminateNotification = "UIApplicationWillTerminateNotification";

/// The application as its screens see it, and as the system tells it of itself. One a process, never destroyed. Main
/// thread.
class UIApplication {
public:
    /// The process's own.
    static UIApplication& shared();

    /// Hands the address to the installed opener. True when something opens it. Without an opener: false, and logged.
    bool openURL(const std::string& url);

    /// The system runs short of memory: posts UIApplicationDidReceiveMemoryWarningNotification on a later turn of the
    /// main queue. From any thread.
    static void didReceiveMemoryWarning();

    /// The number on the application's icon; 0: none. A negative one is 0, a large one stays at 99999.
    void setApplicationIconBadgeNumber(std::int64_t number);
    int applicationIconBadgeNumber() const { return m_badge; }

    /// Registers for messages from a server, by the installed `MessagingService`; nothing without one.
    void registerForRemoteNotifications();

    /// Whether the user has the application in front.
    bool isActive() const { return m_isActive; }

    // What the system tells; each call goes on to the delegate where there is one.

    /// False when the delegate says that it could not start.
    bool didFinishLaunching();
    /// The application comes to the front, or leaves it. What was told already is not told again.
    void setActive(bool active);
    /// It is about to leave: the delegate hears of it, and UIApplicationWillTerminateNotification is posted. May be
    /// told twice, where the end of the session comes before that of the application.
    void willTerminate();
    void didRegisterForRemoteNotifications(const std::vector<std::uint8_t>& token); ///< with this token
    void didFailToRegisterForRemoteNotifications(const Error& error);               ///< for this cause
    /// A message has come from the server. With something to show while the application is active the notification
    /// centre's delegate decides how; else this application's delegate is told, and the centre shows it in all ways.
    void didReceiveRemoteNotification(const UNNotification& notification);

    void setDelegate(std::weak_ptr<UIApplicationDelegate> delegate) { m_delegate = std::move(delegate); }

    using URLOpener = std::function<bool(const std::string& url)>;
    /// Installed by whoever knows the system; empty: none.
    void setURLOpener(URLOpener opener) { m_opener = std::move(opener); }
    using BadgeSetter = std::function<void(int number)>;
    /// Puts a number on the icon when it has changed; empty: none.
    void setBadgeSetter(BadgeSetter setter) { m_badgeSetter = std::move(setter); }

private:
    UIApplication() = default;

    URLOpener m_opener;
    BadgeSetter m_badgeSetter;
    std::weak_ptr<UIApplicationDelegate> m_delegate;
    int m_badge = 0;
    bool m_isActive = false;
};

} // namespace lamina
