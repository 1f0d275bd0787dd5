#include "platform/host/DisplayProbe.h"

#include <QByteArray>
#include <QList>
#include <QtGlobal>

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace lamina {

namespace {

/// Whether somebody listens there. A path that begins with a zero byte stands in no folder.
bool answers(const QByteArray& path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.isEmpty() || path.size() >= static_cast<qsizetype>(sizeof address.sun_path))
        return false;
    std::memcpy(address.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (descriptor < 0)
        return false;
    const auto length = offsetof(sockaddr_un, sun_path) + static_cast<std::size_t>(path.size()) + (path[0] ? 1 : 0);
    const bool connected =
        ::connect(descriptor, reinterpret_cast<const sockaddr*>(&address), static_cast<socklen_t>(length)) == 0 ||
        errno == EAGAIN; // it is only busy
    ::close(descriptor);
    return connected;
}

bool waylandIsThere()
{
    if (!qEnvironmentVariableIsEmpty("WAYLAND_SOCKET"))
        return true;
    const QByteArray name = qgetenv("WAYLAND_DISPLAY");
    return !name.isEmpty() && answers(name.startsWith('/') ? name : qgetenv("XDG_RUNTIME_DIR") + '/' + name);
}

/// A display of another computer is taken to be there.
bool x11IsThere()
{
    const QByteArray display = qgetenv("DISPLAY");
    if (!display.startsWith(':') && !display.startsWith("unix:"))
        return !display.isEmpty();
    const QByteArray number = display.mid(display.indexOf(':') + 1).split('.').constFirst();
    const QByteArray path = "/tmp/.X11-unix/X" + number;
    return answers(path) || answers('\0' + path);
}

} // namespace

bool displayIsThere()
{
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    const bool isWayland = platform.contains("wayland");
    const bool isX11 = platform.contains("xcb");
    if (!platform.isEmpty() && !isWayland && !isX11)
        return true; // one that needs neither
    return ((isWayland || platform.isEmpty()) && waylandIsThere()) || ((isX11 || platform.isEmpty()) && x11IsThere());
}

} // namespace lamina
