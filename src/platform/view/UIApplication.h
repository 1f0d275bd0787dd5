#pragma once

#include <functional>
#include <string>
#include <utility>

namespace lamina {

/// Opens the system's settings for this application.
inline constexpr const char* UIApplicationOpenSettingsURLString = "app-settings:";

/// Posted when the application is about to leave, with its screens still there: the moment to keep what must not be
/// lost. Leaving waits, for some seconds at most, until the main queue is idle. Main thread, without a sender.
inline constexpr const char* UIApplicationWillTerminateNotification = "UIApplicationWillTerminateNotification";

/// The application as its screens see it. One a process, never destroyed. Main thread.
class UIApplication {
public:
    /// The process's own.
    static UIApplication& shared();

    /// Hands the address to the installed opener. True when something opens it. Without an opener: false, and logged.
    bool openURL(const std::string& url);

    /// The system runs short of memory: posts UIApplicationDidReceiveMemoryWarningNotification on a later turn of the
    /// main queue. From any thread.
    static void didReceiveMemoryWarning();

    using URLOpener = std::function<bool(const std::string& url)>;
    /// Installed by whoever knows the system; empty: none.
    void setURLOpener(URLOpener opener) { m_opener = std::move(opener); }

private:
    UIApplication() = default;

    URLOpener m_opener;
};

} // namespace lamina
