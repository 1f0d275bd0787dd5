#include "platform/host/LastPointer.h"

#include <QInputDevice>
#include <QPointerEvent>
#include <QWindow>

#include <algorithm>

namespace lamina {

namespace {

bool hasDevice(QInputDevice::DeviceTypes types)
{
    const auto devices = QInputDevice::devices();
    return std::any_of(devices.begin(), devices.end(),
                       [types](const QInputDevice* device) { return types.testFlag(device->type()); });
}

} // namespace

LastPointer::LastPointer(QWindow& window)
    : m_touch(hasDevice(QInputDevice::DeviceType::TouchScreen) &&
              !hasDevice(QInputDevice::DeviceType::Mouse | QInputDevice::DeviceType::TouchPad))
{
    window.installEventFilter(this);
}

bool LastPointer::eventFilter(QObject* object, QEvent* event)
{
    switch (event->type()) {
    case QEvent::TouchBegin:
    case QEvent::MouseButtonPress:
    case QEvent::Wheel:
    case QEvent::NativeGesture:
        // A mouse's press that the system makes of a finger's still names the screen as its source.
        set(static_cast<const QPointerEvent*>(event)->deviceType() == QInputDevice::DeviceType::TouchScreen);
        break;
    default:
        break;
    }
    return QObject::eventFilter(object, event);
}

void LastPointer::set(bool touch)
{
    if (m_touch == touch)
        return;
    m_touch = touch;
    emit changed();
}

} // namespace lamina
