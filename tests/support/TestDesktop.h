#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QList>
#include <QStringList>
#include <QVariantMap>

#include <vector>

namespace lamina::test {

/// Stands in for what a desktop does with notifications and numbers on icons: its notification service or, in its
/// place, the portal, and a launcher that listens. Lives in the thread that makes it and answers when that thread's
/// event loop runs.
class TestDesktop : public QDBusVirtualObject {
    Q_OBJECT

public:
    enum class Kind { Service, Portal };

    struct Shown {
        QString identifier; ///< of the portal's alone
        uint number = 0;    ///< of the service's alone
        uint replaced = 0;
        QString title;
        QString body;
        QStringList actions;
        QVariantMap options; ///< the service's hints, or all that the portal was given
    };

    /// Takes the names on the bus of the address, or the session's. See `isRunning`.
    explicit TestDesktop(Kind kind = Kind::Service, const QString& address = {});
    ~TestDesktop() override;

    bool isRunning() const { return m_running; }
    /// Leaves the bus, as a program that has crashed.
    void vanish();

    /// What the service can do. Default: actions and body-markup.
    void setCapabilities(const QStringList& capabilities) { m_capabilities = capabilities; }
    int capabilitiesAsked() const { return m_capabilitiesAsked; }
    /// From now on notifications wait for their answer until `answer`.
    void hesitate() { m_hesitates = true; }
    /// Answers those that wait; the next ones are answered at once.
    void answer();
    /// From now on a notification leads to an error.
    void refuse() { m_refuses = true; }

    /// All that there were, the last one at the end.
    const std::vector<Shown>& shown() const { return m_shown; }
    /// What was taken off the screen: the service's numbers, and the portal's identifiers.
    const QStringList& withdrawn() const { return m_withdrawn; }

    /// The user opens one: `name` is its number, or the portal's identifier. Without a token none is sent.
    void open(const QString& name, const QString& token = {}, const QString& action = QStringLiteral("default"));
    /// The user sweeps one of the service's away.
    void sweep(uint number);

    /// What the launcher was told, as the number that it shows; -1: something that makes no sense.
    const QList<qlonglong>& badges() const { return m_badges; }
    /// Asks the entry that told last, as a launcher does that starts later; the same values.
    qlonglong askedBadge();

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private slots:
    void badgeTold(const QDBusMessage& message);

private:
    void notify(const QDBusMessage& call);
    void add(const QDBusMessage& call);
    void reply(const QDBusMessage& call, const QDBusMessage& answer);

    Kind m_kind;
    QString m_connectionName;
    QDBusConnection m_bus;
    bool m_running = false;
    bool m_hesitates = false;
    bool m_refuses = false;
    QStringList m_capabilities{QStringLiteral("actions"), QStringLiteral("body-markup")};
    int m_capabilitiesAsked = 0;
    uint m_lastNumber = 0;
    std::vector<Shown> m_shown;
    std::vector<QDBusMessage> m_waiting;
    QStringList m_withdrawn;
    QList<qlonglong> m_badges;
    QDBusMessage m_lastBadge;
};

} // namespace lamina::test
