#pragma once

#include "platform/host/services/LazyBus.h"
#include "platform/host/services/NotificationRoad.h"
#include "platform/host/system/Portal.h"

#include <QDBusMessage>
#include <QString>

#include <memory>

class QDBusServiceWatcher;

namespace lamina {

/// Notifications by the portal org.freedesktop.portal.Notification,
/// https://flatpak.github.io/xdg-desktop-portal/docs/, which is all that a sandbox lets through. The bus is looked for
/// with the first notification. The portal knows notifications by our own identifiers, also those of an earlier run.
/// Main thread.
class PortalNotifications : public NotificationRoad {
    Q_OBJECT

public:
    explicit PortalNotifications(BusConnector connector = sessionBus, QObject* parent = nullptr);
    ~PortalNotifications() override;

    void show(const ShownNotification& notification) override;
    void withdraw(const QString& identifier) override;
    bool needsProcess() const override { return false; }

private slots:
    void actionInvoked(const QDBusMessage& message);

private:
    void watch(QDBusConnection& bus);
    void listenTo(const QString& owner);

    LazyBus m_bus;
    std::unique_ptr<QDBusServiceWatcher> m_watcher;
    QString m_owner; ///< of the portal's name, by the bus's own name for it
};

} // namespace lamina
