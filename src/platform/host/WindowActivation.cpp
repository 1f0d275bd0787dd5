#include "platform/host/WindowActivation.h"

#include <QWindow>

namespace lamina {

namespace {

/// Of xdg-activation, https://wayland.app/protocols/xdg-activation-v1.
constexpr const char* kWaylandToken = "XDG_ACTIVATION_TOKEN";
/// Of X11, https://specifications.freedesktop.org/startup-notification-spec/.
constexpr const char* kX11Token = "DESKTOP_STARTUP_ID";

} // namespace

std::string tokenOfEnvironment()
{
    const QByteArray token = qgetenv(kWaylandToken);
    return (token.isEmpty() ? qgetenv(kX11Token) : token).toStdString();
}

void activateWindow(QWindow& window, const std::string& token)
{
    // From there Qt's Wayland plugin takes it.
    if (!token.empty())
        qputenv(kWaylandToken, QByteArray::fromStdString(token));
    window.requestActivate();
    qunsetenv(kWaylandToken); // of no use to another program, and to this window only once
}

} // namespace lamina
