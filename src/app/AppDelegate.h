#pragma once

#include "platform/application/FIRMessaging.h"
#include "platform/application/UIApplication.h"
#include "platform/application/UIApplicationDelegate.h"
#include "platform/application/UNNotification.h"
#include "platform/application/UNUserNotificationCenter.h"
#include "platform/base/Result.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace lamina {

class UIWindow;

/// Starts the services that the application needs, and keeps the number on its icon in step with the messages that
/// come. A message carries that number under "badge" in its `userInfo`; whatever is no number there changes nothing,
/// and of a fraction the integer part counts. Main thread.
class AppDelegate final : public UIApplicationDelegate,
                          public UNUserNotificationCenterDelegate,
                          public FIRMessagingDelegate,
                          public std::enable_shared_from_this<AppDelegate> {
public:
    /// Nothing holds the new one but the caller: the application and its services keep weak references.
    static std::shared_ptr<AppDelegate> make();

    /// The application's window; null while it has none.
    const std::shared_ptr<UIWindow>& window() const { return m_window; }
    void setWindow(std::shared_ptr<UIWindow> window) { m_window = std::move(window); }

    /// What the icon shows once the application is in front: always 0, none.
    int getCurrentBadgeNumber() const { return 0; }

    /// Configures the services, becomes their delegate, asks for leave to notify (whatever the answer, all goes on),
    /// and registers for messages. True.
    bool didFinishLaunchingWithOptions(UIApplication& application) override;
    /// Takes the number off the icon.
    void applicationDidBecomeActive(UIApplication& application) override;
    void applicationWillResignActive(UIApplication&) override {}
    void applicationDidEnterBackground(UIApplication&) override {}
    void applicationWillEnterForeground(UIApplication&) override {}
    void applicationWillTerminate(UIApplication&) override {}
    void didRegisterForRemoteNotificationsWithDeviceToken(UIApplication& application,
                                                          const std::vector<std::uint8_t>& token) override;
    /// Only logged: the application is whole without messages.
    void didFailToRegisterForRemoteNotificationsWithError(UIApplication& application, const Error& error) override;
    /// Never calls the handler: nothing was fetched, and there is nothing to wait for.
    void
    didReceiveRemoteNotification(UIApplication& application, const UNNotification& notification,
                                 const std::function<void(UIBackgroundFetchResult)>& fetchCompletionHandler) override;

    /// It is presented in all ways: with its number, its sound and as a banner.
    void
    userNotificationCenter(UNUserNotificationCenter& center, const UNNotification& willPresentNotification,
                           const std::function<void(UNNotificationPresentationOptions)>& completionHandler) override;
    void userNotificationCenter(UNUserNotificationCenter& center,
                                const UNNotificationResponse& didReceiveNotificationResponse,
                                const std::function<void()>& completionHandler) override;

    /// The address is neither kept nor sent anywhere.
    void messaging(FIRMessaging&, const std::string&) override {}

private:
    AppDelegate() = default;

    std::shared_ptr<UIWindow> m_window;
};

} // namespace lamina
