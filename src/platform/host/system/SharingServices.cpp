#include "platform/host/system/SharingServices.h"

#include "platform/host/system/DetachedProgram.h"
#include "platform/host/system/Portal.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>

namespace lamina {

namespace {

constexpr int kPatience = 1000; // milliseconds

/// Whether it is there, or starts when it is called.
bool hasService(const QDBusConnection& bus, const QString& name)
{
    QDBusConnectionInterface* const daemon = bus.interface();
    return daemon &&
           (daemon->isServiceRegistered(name).value() || daemon->activatableServiceNames().value().contains(name));
}

/// Whether the running portal has the interface: every one of them tells its version.
bool hasPortal(const QDBusConnection& bus, const char* name)
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        kPortalService, kPortalPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    call << QStringLiteral("org.freedesktop.portal.") + QLatin1String(name) << QStringLiteral("version");
    return bus.call(call, QDBus::Block, kPatience).type() == QDBusMessage::ReplyMessage;
}

} // namespace

std::set<UIActivityType> servedActivities(const QDBusConnection& bus)
{
    using Type = UIActivityType;
    std::set<Type> served{Type::Copy, Type::SaveCopy};
    const bool opener = hasProgram(QStringLiteral("xdg-open"));
    const bool portals = bus.isConnected() && hasService(bus, kPortalService);
    if (opener || (portals && hasPortal(bus, "OpenURI")))
        served.insert(Type::OpenWith);
    if (hasProgram(QStringLiteral("xdg-email")) || (portals && hasPortal(bus, "Email")))
        served.insert(Type::Mail);
    if (opener || (bus.isConnected() && hasService(bus, kFileManager)))
        served.insert(Type::ShowInFolder);
    if (portals && hasPortal(bus, "Print"))
        served.insert(Type::Print);
    return served;
}

} // namespace lamina
