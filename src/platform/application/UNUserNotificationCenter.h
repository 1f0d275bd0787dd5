#pragma once

#include "platform/application/UNNotification.h"

#include <functional>
#include <memory>
#include <utility>

namespace lamina {

class UNUserNotificationCenter;

/// Who decides about notifications that come while the application is in front, and hears of those that the user opens.
class UNUserNotificationCenterDelegate {
public:
    virtual ~UNUserNotificationCenterDelegate() = default;
    /// One has come while the application is active. It is presented as the handler is told, and not at all while the
    /// handler has not been called.
    virtual void
    userNotificationCenter(UNUserNotificationCenter& center, const UNNotification& willPresentNotification,
                           const std::function<void(UNNotificationPresentationOptions)>& completionHandler) = 0;
    /// The user has opened one.
    virtual void userNotificationCenter(UNUserNotificationCenter& center,
                                        const UNNotificationResponse& didReceiveNotificationResponse,
                                        const std::function<void()>& completionHandler) = 0;
};

/// What shows notifications on this system. Installed by whoever knows it; without one nothing is shown. Main thread.
class NotificationService {
public:
    virtual ~NotificationService() = default;
    /// Asks the user, where the system asks at all; the answer comes on a later turn of the main queue.
    virtual void requestAuthorization(UNAuthorizationOptions options, std::function<void(bool granted)> completion) = 0;
    /// Presents it; of the options, the sound and the banner are its affair.
    virtual void present(const UNNotification& notification, UNNotificationPresentationOptions options) = 0;
};

/// Where notifications come in and go out. One a process, never destroyed. Main thread.
class UNUserNotificationCenter {
public:
    /// The process's own.
    static UNUserNotificationCenter& currentNotificationCenter();

    void setDelegate(std::weak_ptr<UNUserNotificationCenterDelegate> delegate) { m_delegate = std::move(delegate); }
    /// Asks for leave to tell the user in these ways. The completion runs once, on a later turn of the main queue;
    /// without a service: false.
    void requestAuthorizationWithOptions(UNAuthorizationOptions options,
                                         std::function<void(bool granted)> completionHandler);

    /// One has come while the application is active: the delegate decides how it is presented.
    void willPresent(const UNNotification& notification);
    /// One has come while it is not: the service shows it in all ways.
    void show(const UNNotification& notification);
    /// The user has opened one.
    void didReceive(const UNNotificationResponse& response);

    /// Null: none. It must outlive its installation.
    void setService(NotificationService* service) { m_service = service; }

private:
    UNUserNotificationCenter() = default;

    std::weak_ptr<UNUserNotificationCenterDelegate> m_delegate;
    NotificationService* m_service = nullptr;
};

} // namespace lamina
