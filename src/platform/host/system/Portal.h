#pragma once

#include <QDBusConnection>
#include <QString>

#include <functional>

namespace lamina {

// The desktop's portals, https://flatpak.github.io/xdg-desktop-portal/docs/: services on the session bus that show the
// dialogs and know the settings of whatever desktop is running.
inline const QString kPortalService = QStringLiteral("org.freedesktop.portal.Desktop");
inline const QString kPortalPath = QStringLiteral("/org/freedesktop/portal/desktop");

/// Gives the bus on which the portals are looked for. Called on a background thread, since connecting waits for an
/// answer.
using BusConnector = std::function<QDBusConnection()>;

/// The session's own bus, not connected when there is none.
inline QDBusConnection sessionBus()
{
    return QDBusConnection::sessionBus();
}

} // namespace lamina
