#pragma once

#include "platform/application/UNNotification.h"
#include "platform/base/Result.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace lamina {

class UIApplication;

/// What became of a message that was handed to the application.
enum class UIBackgroundFetchResult { NewData, NoData, Failed };

/// Who follows the application's life. Main thread.
class UIApplicationDelegate {
public:
    virtual ~UIApplicationDelegate() = default;
    /// The application has started; false: it could not.
    virtual bool didFinishLaunchingWithOptions(UIApplication& application) = 0;
    virtual void applicationDidBecomeActive(UIApplication& application) = 0;     ///< it is in front
    virtual void applicationWillResignActive(UIApplication& application) = 0;    ///< it leaves the front
    virtual void applicationDidEnterBackground(UIApplication& application) = 0;  ///< it has left it
    virtual void applicationWillEnterForeground(UIApplication& application) = 0; ///< it comes to the front
    virtual void applicationWillTerminate(UIApplication& application) = 0;       ///< see UIApplication
    /// What `registerForRemoteNotifications` has led to.
    virtual void didRegisterForRemoteNotificationsWithDeviceToken(UIApplication& application,
                                                                  const std::vector<std::uint8_t>& token) = 0;
    virtual void didFailToRegisterForRemoteNotificationsWithError(UIApplication& application,
                                                                  const Error& error) = 0; ///< why not
    /// A message has come from the server.
    virtual void
    didReceiveRemoteNotification(UIApplication& application, const UNNotification& notification,
                                 const std::function<void(UIBackgroundFetchResult)>& fetchCompletionHandler) = 0;
};

} // namespace lamina
