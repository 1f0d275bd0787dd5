#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusVirtualObject>
#include <QVariantMap>

#include <string>
#include <vector>

namespace lamina::test {

/// Stands in for a distributor of UnifiedPush on the session bus: records who registers and answers as told, and calls
/// the application. Lives in the thread that makes it and answers when that thread's event loop runs.
class TestDistributor : public QDBusVirtualObject {
public:
    /// Takes the name "org.unifiedpush.Distributor." + `name` on the bus of the address, or the session's.
    explicit TestDistributor(const QString& name = QStringLiteral("Test"), const QString& address = {});
    ~TestDistributor() override;

    bool isRunning() const { return m_running; }

    /// What Register gives from now on; empty: an error. At first that it has succeeded.
    void setAnswer(const QVariantMap& answer) { m_answer = answer; }
    static QVariantMap success() { return {{QStringLiteral("success"), QStringLiteral("REGISTRATION_SUCCEEDED")}}; }

    /// With what Register was called.
    const std::vector<QVariantMap>& registrations() const { return m_registrations; }
    /// The last one's token.
    QString token() const { return m_registrations.back().value(QStringLiteral("token")).toString(); }

    /// Calls a method of the application's connector.
    QDBusPendingCall call(const QString& method, const QVariantList& arguments) const;
    /// Gives the application a message under the last token.
    QDBusPendingCall send(const std::string& message) const;

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    QString m_connectionName;
    QDBusConnection m_bus;
    bool m_running = false;
    QVariantMap m_answer = success();
    std::vector<QVariantMap> m_registrations;
};

} // namespace lamina::test
