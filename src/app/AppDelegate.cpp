#include "app/AppDelegate.h"

#include "platform/base/Log.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>

namespace lamina {

namespace {

/// Far more than an icon ever shows, and held by every type on the way.
constexpr std::int64_t kLargestBadge = 1'000'000'000;

std::int64_t integerOf(const nlohmann::json& number)
{
    if (number.is_number_unsigned())
        return static_cast<std::int64_t>(std::min<std::uint64_t>(number.get<std::uint64_t>(), kLargestBadge));
    if (number.is_number_integer())
        return std::clamp<std::int64_t>(number.get<std::int64_t>(), -kLargestBadge, kLargestBadge);
    constexpr double kLargest = kLargestBadge;
    return static_cast<std::int64_t>(std::clamp(number.get<double>(), -kLargest, kLargest));
}

/// The number that the icon is to show; nothing when the message doesn't say.
std::optional<std::int64_t> badgeOf(const nlohmann::json& userInfo)
{
    const auto badge = userInfo.is_object() ? userInfo.find("badge") : userInfo.end();
    if (badge == userInfo.end() || !badge->is_number())
        return std::nullopt;
    if (badge->is_number_float() && std::isnan(badge->get<double>()))
        return std::nullopt;
    return integerOf(*badge);
}

void applyBadgeOf(const UNNotification& notification)
{
    if (const std::optional<std::int64_t> badge = badgeOf(notification.userInfo))
        UIApplication::shared().setApplicationIconBadgeNumber(*badge);
}

} // namespace

std::shared_ptr<AppDelegate> AppDelegate::make()
{
    return std::shared_ptr<AppDelegate>(new AppDelegate);
}

bool AppDelegate::didFinishLaunchingWithOptions(UIApplication& application)
{
    FIRApp::configure();
    FIRMessaging::messaging().setDelegate(weak_from_this());
    UNUserNotificationCenter& center = UNUserNotificationCenter::currentNotificationCenter();
    center.setDelegate(weak_from_this());
    center.requestAuthorizationWithOptions(
        UNAuthorizationOptionBadge | UNAuthorizationOptionSound | UNAuthorizationOptionAlert, [](bool) {});
    application.registerForRemoteNotifications();
    return true;
}

void AppDelegate::applicationDidBecomeActive(UIApplication& application)
{
    application.setApplicationIconBadgeNumber(getCurrentBadgeNumber());
}

void AppDelegate::didRegisterForRemoteNotificationsWithDeviceToken(UIApplication&,
                                                                   const std::vector<std::uint8_t>& token)
{
    FIRMessaging::messaging().setAPNSToken(token);
}

void AppDelegate::didFailToRegisterForRemoteNotificationsWithError(UIApplication&, const Error& error)
{
    logWarning("Unable to register for remote notifications: " + error.message());
}

void AppDelegate::didReceiveRemoteNotification(UIApplication&, const UNNotification& notification,
                                               const std::function<void(UIBackgroundFetchResult)>&)
{
    applyBadgeOf(notification);
}

void AppDelegate::userNotificationCenter(
    UNUserNotificationCenter&, const UNNotification& willPresentNotification,
    const std::function<void(UNNotificationPresentationOptions)>& completionHandler)
{
    applyBadgeOf(willPresentNotification);
    completionHandler(UNNotificationPresentationOptionBadge | UNNotificationPresentationOptionSound |
                      UNNotificationPresentationOptionBanner);
}

void AppDelegate::userNotificationCenter(UNUserNotificationCenter&,
                                         const UNNotificationResponse& didReceiveNotificationResponse,
                                         const std::function<void()>& completionHandler)
{
    applyBadgeOf(didReceiveNotificationResponse.notification);
    completionHandler();
}

} // namespace lamina
