#include "platform/application/UNUserNotificationCenter.h"

#include "platform/base/DispatchQueue.h"

#include <utility>

namespace lamina {

UNUserNotificationCenter& UNUserNotificationCenter::currentNotificationCenter()
{
    static auto* const center = new UNUserNotificationCenter;
    return *center;
}

void UNUserNotificationCenter::requestAuthorizationWithOptions(UNAuthorizationOptions options,
                                                               std::function<void(bool granted)> completionHandler)
{
    if (m_service)
        m_service->requestAuthorization(options, std::move(completionHandler));
    else
        DispatchQueue::main().async([handler = std::move(completionHandler)] { handler(false); });
}

void UNUserNotificationCenter::willPresent(const UNNotification& notification)
{
    const auto delegate = m_delegate.lock();
    if (!delegate)
        return;
    delegate->userNotificationCenter(*this, notification,
                                     [this, notification](UNNotificationPresentationOptions options) {
                                         if (m_service && options != 0)
                                             m_service->present(notification, options);
                                     });
}

void UNUserNotificationCenter::show(const UNNotification& notification)
{
    if (m_service)
        m_service->present(notification, UNNotificationPresentationOptionBadge | UNNotificationPresentationOptionSound |
                                             UNNotificationPresentationOptionBanner);
}

void UNUserNotificationCenter::didReceive(const UNNotificationResponse& response)
{
    if (const auto delegate = m_delegate.lock())
        delegate->userNotificationCenter(*this, response, [] {});
}

} // namespace lamina
