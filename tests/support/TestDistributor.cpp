#include "TestDistributor.h"

#include <QByteArray>
#include <QDBusArgument>
#include <QUuid>

namespace lamina::test {

TestDistributor::TestDistributor(const QString& name, const QString& address)
    : m_connectionName(QUuid::createUuid().toString())
    , m_bus(address.isEmpty() ? QDBusConnection::connectToBus(QDBusConnection::SessionBus, m_connectionName)
                              : QDBusConnection::connectToBus(address, m_connectionName))
{
    m_running = m_bus.registerVirtualObject(QStringLiteral("/org/unifiedpush/Distributor"), this) &&
                m_bus.registerService(QStringLiteral("org.unifiedpush.Distributor.") + name);
}

TestDistributor::~TestDistributor()
{
    m_bus = QDBusConnection(QString()); // the connection ends with the last that holds it
    QDBusConnection::disconnectFromBus(m_connectionName);
}

QDBusPendingCall TestDistributor::call(const QString& method, const QVariantList& arguments) const
{
    QDBusMessage message = QDBusMessage::createMethodCall(QStringLiteral("org.lamina.lamina"),
                                                          QStringLiteral("/org/unifiedpush/Connector"),
                                                          QStringLiteral("org.unifiedpush.Connector2"), method);
    message.setArguments(arguments);
    return m_bus.asyncCall(message);
}

QDBusPendingCall TestDistributor::send(const std::string& message) const
{
    return call(QStringLiteral("Message"), {QVariantMap{{QStringLiteral("token"), token()},
                                                        {QStringLiteral("message"), QByteArray::fromStdString(message)},
                                                        {QStringLiteral("id"), QUuid::createUuid().toString()}}});
}

bool TestDistributor::handleMessage(const QDBusMessage& message, const QDBusConnection&)
{
    if (message.member() != QLatin1String("Register") || message.signature() != QLatin1String("a{sv}") ||
        message.interface() != QLatin1String("org.unifiedpush.Distributor2"))
        return false;
    m_registrations.push_back(qdbus_cast<QVariantMap>(message.arguments().constFirst()));
    m_bus.send(m_answer.isEmpty() ? message.createErrorReply(QDBusError::Failed, QStringLiteral("it is broken"))
                                  : message.createReply(QVariant(m_answer)));
    return true;
}

} // namespace lamina::test
