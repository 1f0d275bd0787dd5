#include "TestDesktop.h"

#include <QDBusArgument>
#include <QDBusVariant>

#include <algorithm>
#include <utility>

namespace lamina::test {

namespace {

const QString kService = QStringLiteral("org.freedesktop.Notifications");
const QString kServicePath = QStringLiteral("/org/freedesktop/Notifications");
const QString kPortal = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPortalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kPortalInterface = QStringLiteral("org.freedesktop.portal.Notification");
const QString kLauncherInterface = QStringLiteral("com.canonical.Unity.LauncherEntry");

QString newConnectionName()
{
    static int count = 0;
    return QStringLiteral("test desktop %1").arg(++count);
}

QDBusConnection newConnection(const QString& address, const QString& name)
{
    return address.isEmpty() ? QDBusConnection::connectToBus(QDBusConnection::SessionBus, name)
                             : QDBusConnection::connectToBus(address, name);
}

/// The number that a launcher shows after it was told this.
qlonglong badgeIn(const QDBusMessage& message)
{
    if (message.signature() != QLatin1String("sa{sv}") ||
        message.arguments().constFirst() != QLatin1String("application://org.lamina.lamina.desktop"))
        return -1;
    const QVariantMap entry = qdbus_cast<QVariantMap>(message.arguments().at(1));
    const QVariant count = entry.value(QStringLiteral("count"));
    const QVariant isVisible = entry.value(QStringLiteral("count-visible"));
    if (count.metaType() != QMetaType::fromType<qlonglong>() || isVisible.metaType() != QMetaType::fromType<bool>() ||
        isVisible.toBool() != (count.toLongLong() > 0))
        return -1;
    return count.toLongLong();
}

} // namespace

TestDesktop::TestDesktop(Kind kind, const QString& address)
    : m_kind(kind)
    , m_connectionName(newConnectionName())
    , m_bus(newConnection(address, m_connectionName))
{
    m_bus.connect(QString(), QString(), kLauncherInterface, QStringLiteral("Update"), this,
                  SLOT(badgeTold(QDBusMessage)));
    m_running = m_bus.registerVirtualObject(kind == Kind::Service ? kServicePath : kPortalPath, this) &&
                m_bus.registerService(kind == Kind::Service ? kService : kPortal);
}

TestDesktop::~TestDesktop()
{
    vanish();
}

void TestDesktop::vanish()
{
    m_running = false;
    m_waiting.clear();
    m_bus = QDBusConnection(QString()); // the connection ends with the last that holds it
    QDBusConnection::disconnectFromBus(m_connectionName);
}

bool TestDesktop::handleMessage(const QDBusMessage& message, const QDBusConnection&)
{
    const QString call = message.interface() + QLatin1Char('.') + message.member() + message.signature();
    if (call == kService + QLatin1String(".Notifysusssasa{sv}i"))
        notify(message);
    else if (call == kPortalInterface + QLatin1String(".AddNotificationsa{sv}"))
        add(message);
    else if (call == kService + QLatin1String(".GetCapabilities")) {
        ++m_capabilitiesAsked;
        m_bus.send(message.createReply(m_capabilities));
    } else if (call == kService + QLatin1String(".CloseNotificationu") ||
               call == kPortalInterface + QLatin1String(".RemoveNotifications")) {
        m_withdrawn.append(message.arguments().constFirst().toString());
        m_bus.send(message.createReply());
    } else
        return false;
    return true;
}

void TestDesktop::notify(const QDBusMessage& call)
{
    const QVariantList arguments = call.arguments();
    Shown shown;
    shown.replaced = arguments.at(1).toUInt();
    shown.number = shown.replaced != 0 ? shown.replaced : ++m_lastNumber;
    shown.title = arguments.at(3).toString();
    shown.body = arguments.at(4).toString();
    shown.actions = arguments.at(5).toStringList();
    shown.options = qdbus_cast<QVariantMap>(arguments.at(6));
    m_shown.push_back(shown);
    reply(call, call.createReply(shown.number));
}

void TestDesktop::add(const QDBusMessage& call)
{
    Shown shown;
    shown.identifier = call.arguments().at(0).toString();
    shown.options = qdbus_cast<QVariantMap>(call.arguments().at(1));
    shown.title = shown.options.take(QStringLiteral("title")).toString();
    shown.body = shown.options.take(QStringLiteral("body")).toString();
    m_shown.push_back(shown);
    reply(call, call.createReply());
}

void TestDesktop::reply(const QDBusMessage& call, const QDBusMessage& answer)
{
    if (m_refuses)
        m_bus.send(call.createErrorReply(QDBusError::Failed,
                                         QStringLiteral("\x1b[31mnot today\n") + QString(100'000, QLatin1Char('x'))));
    else if (m_hesitates)
        m_waiting.push_back(answer);
    else
        m_bus.send(answer);
}

void TestDesktop::answer()
{
    m_hesitates = false;
    for (const QDBusMessage& waiting : std::exchange(m_waiting, {}))
        m_bus.send(waiting);
}

void TestDesktop::open(const QString& name, const QString& token, const QString& action)
{
    if (m_kind == Kind::Portal) {
        QVariantList parameters;
        if (!token.isEmpty())
            parameters << QVariantMap{{QStringLiteral("activation-token"), token}};
        QDBusMessage signal =
            QDBusMessage::createSignal(kPortalPath, kPortalInterface, QStringLiteral("ActionInvoked"));
        signal << name << action << QVariant(parameters);
        m_bus.send(signal);
        return;
    }
    for (const auto& [member, text] :
         {std::pair(QStringLiteral("ActivationToken"), token), std::pair(QStringLiteral("ActionInvoked"), action)}) {
        if (text.isEmpty())
            continue;
        QDBusMessage signal = QDBusMessage::createSignal(kServicePath, kService, member);
        signal << name.toUInt() << text;
        m_bus.send(signal);
    }
}

void TestDesktop::sweep(uint number)
{
    constexpr uint kByTheUser = 2;
    QDBusMessage signal = QDBusMessage::createSignal(kServicePath, kService, QStringLiteral("NotificationClosed"));
    signal << number << kByTheUser;
    m_bus.send(signal);
}

void TestDesktop::badgeTold(const QDBusMessage& message)
{
    m_lastBadge = message;
    m_badges.append(badgeIn(message));
}

qlonglong TestDesktop::askedBadge()
{
    return badgeIn(m_bus.call(QDBusMessage::createMethodCall(m_lastBadge.service(), m_lastBadge.path(),
                                                             kLauncherInterface, QStringLiteral("Query")),
                              QDBus::BlockWithGui));
}

} // namespace lamina::test
