#include "platform/application/UIApplication.h"

#include "platform/application/FIRMessaging.h"
#include "platform/application/UNUserNotificationCenter.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/Log.h"
#include "platform/base/MemoryWarning.h"
#include "platform/base/NotificationCenter.h"

#include <algorithm>
#include <utility>

namespace lamina {

UIApplication& UIApplication::shared()
{
    static auto* const application = new UIApplication;
    return *application;
}

bool UIApplication::openURL(const std::string& url)
{
    const bool opened = m_opener && m_opener(url);
    if (!opened)
        logWarning("nothing here opens " + url);
    return opened;
}

void UIApplication::didReceiveMemoryWarning()
{
    DispatchQueue::main().async(
        [] { NotificationCenter::defaultCenter().post(UIApplicationDidReceiveMemoryWarningNotification); });
}

void UIApplication::setApplicationIconBadgeNumber(std::int64_t number)
{
    constexpr std::int64_t kMost = 99'999;
    const int badge = static_cast<int>(std::clamp<std::int64_t>(number, 0, kMost));
    if (badge == std::exchange(m_badge, badge))
        return;
    if (m_badgeSetter)
        m_badgeSetter(badge);
}

void UIApplication::registerForRemoteNotifications()
{
    if (MessagingService* const service = FIRMessaging::messaging().service())
        service->registerForRemoteNotifications();
}

bool UIApplication::didFinishLaunching()
{
    const auto delegate = m_delegate.lock();
    return !delegate || delegate->didFinishLaunchingWithOptions(*this);
}

void UIApplication::setActive(bool active)
{
    if (active == std::exchange(m_isActive, active))
        return;
    const auto delegate = m_delegate.lock();
    if (!delegate)
        return;
    if (active) {
        delegate->applicationWillEnterForeground(*this);
        delegate->applicationDidBecomeActive(*this);
    } else {
        delegate->applicationWillResignActive(*this);
        delegate->applicationDidEnterBackground(*this);
    }
}

void UIApplication::willTerminate()
{
    if (const auto delegate = m_delegate.lock())
        delegate->applicationWillTerminate(*this);
    NotificationCenter::defaultCenter().post(UIApplicationWillTerminateNotification);
}

void UIApplication::didRegisterForRemoteNotifications(const std::vector<std::uint8_t>& token)
{
    if (const auto delegate = m_delegate.lock())
        delegate->didRegisterForRemoteNotificationsWithDeviceToken(*this, token);
}

void UIApplication::didFailToRegisterForRemoteNotifications(const Error& error)
{
    if (const auto delegate = m_delegate.lock())
        delegate->didFailToRegisterForRemoteNotificationsWithError(*this, error);
}

void UIApplication::didReceiveRemoteNotification(const UNNotification& notification)
{
    UNUserNotificationCenter& center = UNUserNotificationCenter::currentNotificationCenter();
    const bool isShown = !notification.title.empty() || !notification.body.empty();
    if (isShown && m_isActive)
        return center.willPresent(notification);
    if (const auto delegate = m_delegate.lock())
        delegate->didReceiveRemoteNotification(*this, notification, [](UIBackgroundFetchResult) {});
    if (isShown)
        center.show(notification);
}

} // namespace lamina
