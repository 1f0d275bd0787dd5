#include "platform/host/services/ServiceNotifications.h"

#include "platform/application/ApplicationRequest.h"
#include "platform/base/Localization.h"
#include "platform/host/system/BusCalls.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QVariantMap>

#include <algorithm>
#include <utility>

namespace lamina {

namespace {

const QString kService = QStringLiteral("org.freedesktop.Notifications");
const QString kPath = QStringLiteral("/org/freedesktop/Notifications");
const QString kDefaultAction = QStringLiteral("default");

QDBusMessage callOf(const char* method)
{
    return QDBusMessage::createMethodCall(kService, kPath, kService, QString::fromLatin1(method));
}

} // namespace

ServiceNotifications::ServiceNotifications(BusConnector connector, QObject* parent)
    : NotificationRoad(parent)
    , m_bus(std::move(connector))
{
}

ServiceNotifications::~ServiceNotifications() = default;

void ServiceNotifications::show(const ShownNotification& notification)
{
    auto entry = find(notification.identifier);
    if (entry == m_entries.end())
        entry = m_entries.insert(entry, Entry());
    entry->content = notification;
    entry->isUnwanted = false;
    if (entry->state == State::Sent) {
        entry->isChanged = true;
        return;
    }
    entry->state = State::Waiting;
    m_bus.with(
        [this](QDBusConnection& bus) {
            watch(bus);
            if (m_capabilities)
                sendWaiting(bus);
            else
                askCapabilities(bus);
        },
        [this] { drop(State::Waiting); }); // without a bus there is no desktop that anybody would miss
}

void ServiceNotifications::withdraw(const QString& identifier)
{
    const auto entry = find(identifier);
    if (entry == m_entries.end())
        return;
    if (entry->state == State::Sent) {
        entry->isUnwanted = true;
        return;
    }
    if (entry->number != 0)
        close(entry->number);
    m_entries.erase(entry);
}

void ServiceNotifications::watch(QDBusConnection& bus)
{
    if (m_watcher)
        return;
    m_watcher = std::make_unique<QDBusServiceWatcher>(kService, bus, QDBusServiceWatcher::WatchForOwnerChange);
    connect(m_watcher.get(), &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString& formerOwner) {
                if (!formerOwner.isEmpty()) // otherwise it has only just been started
                    lost();
            });
}

/// By the owner's own name: for the service's, Qt would ask the bus who that is, and wait.
void ServiceNotifications::listenTo(const QString& owner)
{
    if (owner == m_owner)
        return;
    QDBusConnection& bus = *m_bus.connection();
    for (const auto& [signal, slot] : {std::pair("ActionInvoked", SLOT(actionInvoked(uint, QString))),
                                       std::pair("ActivationToken", SLOT(activationToken(uint, QString))),
                                       std::pair("NotificationClosed", SLOT(notificationClosed(uint, uint)))}) {
        const QString name = QString::fromLatin1(signal);
        if (!m_owner.isEmpty())
            bus.disconnect(m_owner, kPath, kService, name, this, slot);
        bus.connect(owner, kPath, kService, name, this, slot);
    }
    m_owner = owner;
}

void ServiceNotifications::askCapabilities(QDBusConnection& bus)
{
    if (std::exchange(m_asksCapabilities, true))
        return;
    callBus(bus, callOf("GetCapabilities"), this, [this](const QDBusMessage& reply) { takeCapabilities(reply); });
}

void ServiceNotifications::takeCapabilities(const QDBusMessage& reply)
{
    m_asksCapabilities = false;
    if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != QLatin1String("as")) {
        complain(reply);
        return drop(State::Waiting);
    }
    listenTo(reply.service());
    m_capabilities = reply.arguments().constFirst().toStringList();
    sendWaiting(*m_bus.connection());
}

void ServiceNotifications::sendWaiting(QDBusConnection& bus)
{
    for (Entry& entry : m_entries)
        if (entry.state == State::Waiting)
            send(bus, entry);
}

void ServiceNotifications::send(QDBusConnection& bus, Entry& entry)
{
    entry.state = State::Sent;
    entry.isChanged = false;
    callBus(bus, notifyCall(entry), this, [this, identifier = entry.content.identifier](const QDBusMessage& reply) {
        answered(*m_bus.connection(), identifier, reply);
    });
}

QDBusMessage ServiceNotifications::notifyCall(const Entry& entry) const
{
    const auto can = [this](const char* capability) {
        return m_capabilities && m_capabilities->contains(QLatin1String(capability));
    };
    const ShownNotification& content = entry.content;
    QVariantMap hints{{QStringLiteral("desktop-entry"), QStringLiteral("org.lamina.lamina")},
                      {QStringLiteral("category"), QStringLiteral("x-lamina.message")}};
    if (content.hasSound)
        hints.insert(QStringLiteral("sound-name"), QStringLiteral("message-new-instant"));
    else
        hints.insert(QStringLiteral("suppress-sound"), true);
    QStringList actions;
    if (can("actions"))
        actions << kDefaultAction << QString::fromStdString(localizedString("Open"));
    QDBusMessage call = callOf("Notify");
    call << QStringLiteral("Lamina") << entry.number << QStringLiteral("org.lamina.lamina") << content.title
         << (can("body-markup") ? content.body.toHtmlEscaped() : content.body) << actions << hints << -1;
    return call;
}

void ServiceNotifications::answered(QDBusConnection& bus, const QString& identifier, const QDBusMessage& reply)
{
    const auto entry = find(identifier);
    if (entry == m_entries.end() || entry->state != State::Sent)
        return;
    if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != QLatin1String("u")) {
        complain(reply);
        return drop(entry);
    }
    entry->number = reply.arguments().constFirst().toUInt();
    entry->state = State::Shown;
    if (entry->isUnwanted)
        withdraw(identifier);
    else if (entry->isChanged)
        send(bus, *entry);
}

void ServiceNotifications::close(uint number)
{
    QDBusMessage call = callOf("CloseNotification");
    call << number;
    call.setAutoStartService(false);
    m_bus.connection()->send(call);
}

/// What is on its way ends with an error; numbers mean nothing to the next service.
void ServiceNotifications::lost()
{
    m_capabilities.reset();
    for (Entry& entry : m_entries)
        entry.number = 0;
    drop(State::Shown);
}

void ServiceNotifications::drop(State state)
{
    while (true) {
        const auto entry = std::ranges::find(m_entries, state, &Entry::state);
        if (entry == m_entries.end())
            return;
        drop(entry);
    }
}

void ServiceNotifications::drop(Entries::iterator entry)
{
    const QString identifier = entry->content.identifier;
    m_entries.erase(entry);
    emit closed(identifier);
}

ServiceNotifications::Entries::iterator ServiceNotifications::find(const QString& identifier)
{
    return std::ranges::find_if(m_entries, [&](const Entry& entry) { return entry.content.identifier == identifier; });
}

/// Signals go to all: most are about somebody else's.
ServiceNotifications::Entries::iterator ServiceNotifications::find(uint number)
{
    return number == 0 ? m_entries.end() : std::ranges::find(m_entries, number, &Entry::number);
}

void ServiceNotifications::actionInvoked(uint number, const QString& action)
{
    const auto entry = find(number);
    if (entry == m_entries.end())
        return;
    const QString token = std::exchange(entry->token, {}); // for this action alone
    if (action == kDefaultAction)
        emit opened(QString(entry->content.identifier), token);
}

void ServiceNotifications::activationToken(uint number, const QString& token)
{
    const auto entry = find(number);
    if (entry != m_entries.end())
        entry->token = token.size() <= kLongestActivationToken ? token : QString();
}

void ServiceNotifications::notificationClosed(uint number, uint)
{
    const auto entry = find(number);
    if (entry == m_entries.end())
        return;
    entry->number = 0;
    if (entry->state == State::Shown)
        drop(entry);
}

} // namespace lamina
