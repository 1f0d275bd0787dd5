#include "platform/host/PointerKind.h"

#include <QInputDevice>
#include <QPointerEvent>
#include <QWindow>

#include <algorithm>

namespace lamina {

namespace {

bool hasTouchScreen()
{
    const QList<const QInputDevice*> devices = QInputDevice::devices();
    return std::any_of(devices.begin(), devices.end(), [](const QInputDevice* device) {
        return device->type() == QInputDevice::DeviceType::TouchScreen;
    });
}

} // namespace

PointerKind::PointerKind(QWindow& window)
    : m_mouse(!hasTouchScreen())
{
    window.installEventFilter(this);
}

bool PointerKind::eventFilter(QObject* object, QEvent* event)
{
    switch (event->type()) {
    case QEvent::TouchBegin:
        setMouse(false);
        break;
    case QEvent::MouseMove:
    case QEvent::MouseButtonPress:
    case QEvent::Wheel:
        // Some platforms make a mouse's events of a finger's.
        if (static_cast<QPointerEvent*>(event)->deviceType() != QInputDevice::DeviceType::TouchScreen)
            setMouse(true);
        break;
    default:
        break;
    }
    return QObject::eventFilter(object, event);
}

void PointerKind::setMouse(bool mouse)
{
    if (m_mouse == mouse)
        return;
    m_mouse = mouse;
    emit changed();
}

} // namespace lamina
