#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QObject>
#include <QString>
#include <QVariantList>

#include <functional>
#include <utility>

namespace lamina {

/// A call of the bus itself, https://dbus.freedesktop.org/doc/dbus-specification.html#message-bus-messages.
inline QDBusMessage busCall(const QString& method, const QVariantList& arguments = {})
{
    const QString name = QStringLiteral("org.freedesktop.DBus");
    QDBusMessage call = QDBusMessage::createMethodCall(name, QStringLiteral("/org/freedesktop/DBus"), name, method);
    call.setArguments(arguments);
    return call;
}

/// Sends the call without waiting: the handler hears the reply, or the error in its place, on a later turn, unless
/// `object` is gone by then. Main thread.
inline void callBus(const QDBusConnection& bus, const QDBusMessage& call, QObject* object,
                    std::function<void(const QDBusMessage& reply)> handler)
{
    auto* const watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), object);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, object, [watcher, handler = std::move(handler)] {
        handler(watcher->reply());
        watcher->deleteLater();
    });
}

} // namespace lamina
