#pragma once

#include "platform/host/services/LazyBus.h"
#include "platform/host/services/NotificationRoad.h"
#include "platform/host/system/Portal.h"

#include <QDBusMessage>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QDBusServiceWatcher;

namespace lamina {

/// Notifications by the desktop's service org.freedesktop.Notifications,
/// https://specifications.freedesktop.org/notification-spec/latest/. The bus, and what the service can do, are asked
/// for with the first notification. What it shows when it goes away is gone. Main thread.
class ServiceNotifications : public NotificationRoad {
    Q_OBJECT

public:
    explicit ServiceNotifications(BusConnector connector = sessionBus, QObject* parent = nullptr);
    ~ServiceNotifications() override;

    void show(const ShownNotification& notification) override;
    void withdraw(const QString& identifier) override;
    bool needsProcess() const override { return true; }

private slots:
    void actionInvoked(uint number, const QString& action);
    void activationToken(uint number, const QString& token);
    void notificationClosed(uint number, uint reason);

private:
    enum class State {
        Waiting, ///< to be sent once the service is known
        Sent,    ///< on its way, without an answer so far
        Shown,
    };
    struct Entry {
        ShownNotification content;
        State state = State::Waiting;
        uint number = 0;         ///< the service's own; 0 before it has answered
        bool isChanged = false;  ///< the content, since it was sent
        bool isUnwanted = false; ///< taken back since it was sent
        QString token;
    };
    using Entries = std::vector<Entry>;

    void watch(QDBusConnection& bus);
    void listenTo(const QString& owner);
    void askCapabilities(QDBusConnection& bus);
    void takeCapabilities(const QDBusMessage& reply);
    void sendWaiting(QDBusConnection& bus);
    void send(QDBusConnection& bus, Entry& entry);
    void answered(QDBusConnection& bus, const QString& identifier, const QDBusMessage& reply);
    void close(uint number);
    void lost();
    void drop(State state);
    void drop(Entries::iterator entry);
    Entries::iterator find(const QString& identifier);
    Entries::iterator find(uint number);
    QDBusMessage notifyCall(const Entry& entry) const;

    LazyBus m_bus;
    std::unique_ptr<QDBusServiceWatcher> m_watcher;
    QString m_owner; ///< of the service's name, by the bus's own name for it
    std::optional<QStringList> m_capabilities;
    bool m_asksCapabilities = false;
    Entries m_entries; ///< in the order in which they came
};

} // namespace lamina
