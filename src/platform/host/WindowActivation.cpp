#include "platform/host/WindowActivation.h"

#include <QByteArray>
#include <QGuiApplication>
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
    // Qt's plugin takes it from there within the call. Elsewhere it would be of no use, and other threads read the
    // environment too.
    const bool isOfUse = !token.empty() && QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
    if (isOfUse)
        qputenv(kWaylandToken, QByteArray::fromStdString(token));
    window.requestActivate();
    if (isOfUse)
        qunsetenv(kWaylandToken);
}

} // namespace lamina
