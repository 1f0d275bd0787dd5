#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace lamina {

/// A message from outside to be told to the user, or to the application alone. A plain value.
struct UNNotification {
    /// Tells it from others; one of the same identifier takes the place of the one that is shown.
    std::string identifier;
    /// What is shown; both empty: nothing is, the message is for the application alone. UTF-8 without control
    /// characters, of bounded length: whoever makes one from what came from outside sees to that.
    std::string title;
    std::string body;
    /// All that came with it, an object.
    nlohmann::json userInfo = nlohmann::json::object();
};

/// What the user has done with a notification.
struct UNNotificationResponse {
    /// The user has opened it.
    static constexpr const char* kDefaultAction = "default";

    UNNotification notification;
    std::string actionIdentifier = kDefaultAction;
};

/// Ways of telling the user that may be asked for; a sum of them.
using UNAuthorizationOptions = unsigned;
inline constexpr UNAuthorizationOptions UNAuthorizationOptionBadge = 1;
inline constexpr UNAuthorizationOptions UNAuthorizationOptionSound = 2;
inline constexpr UNAuthorizationOptions UNAuthorizationOptionAlert = 4;

/// How a notification is presented; a sum of them.
using UNNotificationPresentationOptions = unsigned;
inline constexpr UNNotificationPresentationOptions UNNotificationPresentationOptionBadge = 1;
inline constexpr UNNotificationPresentationOptions UNNotificationPresentationOptionSound = 2;
inline constexpr UNNotificationPresentationOptions UNNotificationPresentationOptionBanner = 16;

} // namespace lamina
