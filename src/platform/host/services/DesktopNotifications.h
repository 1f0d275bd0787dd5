#pragma once

#include "platform/application/UNNotification.h"
#include "platform/application/UNUserNotificationCenter.h"
#include "platform/host/services/NotificationRoad.h"
#include "platform/host/system/Portal.h"

#include <QObject>
#include <QString>

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>

namespace lamina {

/// Who shows notifications on this desktop.
enum class NotificationWay { Service, Portal };

/// The portal in a sandbox (Flatpak, Snap), which lets nothing else through, otherwise the desktop's service; or what
/// the variable LAMINA_NOTIFICATIONS says, "portal" or "service".
NotificationWay notificationWay();

/// Shows notifications on the desktop, by its service or in a sandbox by the portal, and tells the notification centre
/// of those that the user opens. The bus is looked for with the first one. Where nobody shows them nothing happens, but
/// for one line in the log. They stay when this object goes: they are the user's; but nobody hears any more when one is
/// opened. Main thread.
class DesktopNotifications : public QObject, public NotificationService {
    Q_OBJECT

public:
    static constexpr std::size_t kMostTitleCharacters = 200;
    static constexpr std::size_t kMostBodyCharacters = 1000;
    /// The oldest one goes when there are more.
    static constexpr std::size_t kMostOpen = 20;

    explicit DesktopNotifications(BusConnector connector = sessionBus, NotificationWay way = notificationWay(),
                                  QObject* parent = nullptr);
    ~DesktopNotifications() override;

    /// Granted: the desktop asks nobody, and what the user has switched off there is simply not shown.
    void requestAuthorization(UNAuthorizationOptions options, std::function<void(bool granted)> completion) override;
    /// Nothing without the banner; one of an identifier that is shown takes its place.
    void present(const UNNotification& notification, UNNotificationPresentationOptions options) override;

    /// Whether there are some on the screen that would go with this process, or tell nobody that they are opened.
    bool needsProcess() const { return !m_open.empty() && m_road->needsProcess(); }

signals:
    /// The user has opened a notification, of which the centre has heard: the window is to come to the front, for which
    /// the desktop may have given a token.
    void opened(const QString& activationToken);

private:
    struct Open {
        QString key;
        UNNotification notification;
    };

    void wasOpened(const QString& key, const QString& activationToken);
    void forget(const QString& key);

    std::unique_ptr<NotificationRoad> m_road;
    std::deque<Open> m_open; ///< the oldest one first
};

} // namespace lamina
