#include "platform/host/services/PortalNotifications.h"

#include "platform/application/ApplicationRequest.h"
#include "platform/host/system/BusCalls.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QVariantMap>

#include <utility>

namespace lamina {

namespace {

const QString kInterface = QStringLiteral("org.freedesktop.portal.Notification");
const QString kDefaultAction = QStringLiteral("default");

QDBusMessage callOf(const char* method)
{
    return QDBusMessage::createMethodCall(kPortalService, kPortalPath, kInterface, QString::fromLatin1(method));
}

QVariantMap contents(const ShownNotification& notification)
{
    QVariantMap contents{{QStringLiteral("title"), notification.title},
                         {QStringLiteral("body"), notification.body},
                         {QStringLiteral("priority"), QStringLiteral("normal")},
                         {QStringLiteral("default-action"), kDefaultAction}};
    if (!notification.hasSound)
        contents.insert(QStringLiteral("sound"), QStringLiteral("silent")); // older portals leave it out
    return contents;
}

/// Newer portals put it into a dictionary behind the action's own parameter.
QString activationTokenIn(const QVariant& parameters)
{
    for (const QVariant& parameter : qdbus_cast<QVariantList>(parameters)) {
        const auto argument = parameter.value<QDBusArgument>();
        if (argument.currentSignature() != QLatin1String("a{sv}"))
            continue;
        const QString token = qdbus_cast<QVariantMap>(argument).value(QStringLiteral("activation-token")).toString();
        if (token.size() <= kLongestActivationToken)
            return token;
    }
    return {};
}

} // namespace

PortalNotifications::PortalNotifications(BusConnector connector, QObject* parent)
    : NotificationRoad(parent)
    , m_bus(std::move(connector))
{
}

PortalNotifications::~PortalNotifications() = default;

void PortalNotifications::show(const ShownNotification& notification)
{
    m_bus.with(
        [this, notification](QDBusConnection& bus) {
            watch(bus);
            QDBusMessage call = callOf("AddNotification");
            call << notification.identifier << contents(notification);
            callBus(bus, call, this, [this, identifier = notification.identifier](const QDBusMessage& reply) {
                if (reply.type() == QDBusMessage::ReplyMessage)
                    return listenTo(reply.service());
                complain(reply);
                emit closed(identifier);
            });
        },
        [this, identifier = notification.identifier] { emit closed(identifier); });
}

void PortalNotifications::withdraw(const QString& identifier)
{
    m_bus.with([identifier](QDBusConnection& bus) {
        QDBusMessage call = callOf("RemoveNotification");
        call << identifier;
        call.setAutoStartService(false);
        bus.send(call);
    });
}

void PortalNotifications::watch(QDBusConnection& bus)
{
    if (m_watcher)
        return;
    m_watcher = std::make_unique<QDBusServiceWatcher>(kPortalService, bus, QDBusServiceWatcher::WatchForRegistration);
    connect(m_watcher.get(), &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& owner) { listenTo(owner); });
}

/// By the owner's own name: for the service's, Qt would ask the bus who that is, and wait.
void PortalNotifications::listenTo(const QString& owner)
{
    if (owner.isEmpty() || owner == m_owner)
        return;
    const QString action = QStringLiteral("ActionInvoked");
    QDBusConnection& bus = *m_bus.connection();
    if (!m_owner.isEmpty())
        bus.disconnect(m_owner, kPortalPath, kInterface, action, this, SLOT(actionInvoked(QDBusMessage)));
    m_owner = owner;
    bus.connect(m_owner, kPortalPath, kInterface, action, this, SLOT(actionInvoked(QDBusMessage)));
}

void PortalNotifications::actionInvoked(const QDBusMessage& message)
{
    if (message.signature() != QLatin1String("ssav"))
        return;
    const QVariantList arguments = message.arguments();
    if (arguments.at(1).toString() == kDefaultAction)
        emit opened(arguments.at(0).toString(), activationTokenIn(arguments.at(2)));
}

} // namespace lamina
