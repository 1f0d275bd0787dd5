#include "platform/host/services/DesktopNotifications.h"

#include "platform/base/DispatchQueue.h"
#include "platform/base/Log.h"
#include "platform/host/services/NotificationTexts.h"
#include "platform/host/services/PortalNotifications.h"
#include "platform/host/services/ServiceNotifications.h"

#include <QFile>
#include <QRandomGenerator>

#include <algorithm>
#include <string>
#include <utility>

namespace lamina {

namespace {

constexpr std::size_t kMostIdentifierCharacters = 100;

std::unique_ptr<NotificationRoad> makeRoad(BusConnector connector, NotificationWay way)
{
    if (way == NotificationWay::Portal)
        return std::make_unique<PortalNotifications>(std::move(connector));
    return std::make_unique<ServiceNotifications>(std::move(connector));
}

/// Those without an identifier are one each, also among what an earlier run has left on the screen.
QString keyOf(const UNNotification& notification)
{
    if (notification.identifier.empty())
        return QStringLiteral("lamina-%1").arg(QRandomGenerator::system()->generate64(), 16, 16, QLatin1Char('0'));
    return notificationText(notification.identifier, kMostIdentifierCharacters, false);
}

} // namespace

NotificationWay notificationWay()
{
    const QString wanted = qEnvironmentVariable("LAMINA_NOTIFICATIONS");
    if (wanted == QLatin1String("portal"))
        return NotificationWay::Portal;
    if (wanted == QLatin1String("service"))
        return NotificationWay::Service;
    if (!wanted.isEmpty())
        logWarning("LAMINA_NOTIFICATIONS: \"" + wanted.toStdString() + "\" is ignored");
    const bool isSandbox =
        QFile::exists(QStringLiteral("/.flatpak-info")) || !qEnvironmentVariableIsEmpty("SNAP_INSTANCE_NAME");
    return isSandbox ? NotificationWay::Portal : NotificationWay::Service;
}

DesktopNotifications::DesktopNotifications(BusConnector connector, NotificationWay way, QObject* parent)
    : QObject(parent)
    , m_road(makeRoad(std::move(connector), way))
{
    connect(m_road.get(), &NotificationRoad::opened, this, &DesktopNotifications::wasOpened);
    connect(m_road.get(), &NotificationRoad::closed, this, &DesktopNotifications::forget);
}

DesktopNotifications::~DesktopNotifications() = default;

void DesktopNotifications::requestAuthorization(UNAuthorizationOptions, std::function<void(bool granted)> completion)
{
    DispatchQueue::main().async([completion = std::move(completion)] { completion(true); });
}

void DesktopNotifications::present(const UNNotification& notification, UNNotificationPresentationOptions options)
{
    if ((options & UNNotificationPresentationOptionBanner) == 0)
        return;
    ShownNotification shown{keyOf(notification), notificationText(notification.title, kMostTitleCharacters, false),
                            notificationText(notification.body, kMostBodyCharacters, true),
                            (options & UNNotificationPresentationOptionSound) != 0};
    if (shown.title.isEmpty())
        shown.title = QStringLiteral("Lamina"); // desktops show none without a title
    forget(shown.identifier);
    m_open.push_back({shown.identifier, notification});
    if (m_open.size() > kMostOpen) {
        m_road->withdraw(m_open.front().key);
        m_open.pop_front();
    }
    m_road->show(shown);
}

void DesktopNotifications::wasOpened(const QString& key, const QString& activationToken)
{
    const auto open = std::ranges::find(m_open, key, &Open::key);
    if (open != m_open.end()) {
        const UNNotificationResponse response{std::move(open->notification)};
        m_open.erase(open);
        m_road->withdraw(key);
        UNUserNotificationCenter::currentNotificationCenter().didReceive(response);
    }
    emit opened(activationToken);
}

void DesktopNotifications::forget(const QString& key)
{
    std::erase_if(m_open, [&](const Open& open) { return open.key == key; });
}

} // namespace lamina
