#include "platform/host/system/WindowIdentifier.h"

#include <QGuiApplication>
#include <QWindow>

namespace lamina {

std::string portalWindowIdentifier(const QWindow* window)
{
    // Asking for the number would make the native window of one that was never shown.
    if (!window || !window->handle() || QGuiApplication::platformName() != QLatin1String("xcb"))
        return {};
    return "x11:" + QString::number(window->winId(), 16).toStdString();
}

} // namespace lamina
