#include "platform/host/MainLoop.h"

#include "platform/base/DispatchQueue.h"

#include <QCoreApplication>
#include <QEvent>

namespace lamina {

namespace {

const QEvent::Type kPumpEvent = static_cast<QEvent::Type>(QEvent::registerEventType());

} // namespace

MainLoop::MainLoop()
{
    DispatchQueue::main().bindToCurrentThread();
    DispatchQueue::main().setWakeHandler([this] { QCoreApplication::postEvent(this, new QEvent(kPumpEvent)); });
}

MainLoop::~MainLoop()
{
    DispatchQueue::main().setWakeHandler({});
}

bool MainLoop::event(QEvent* event)
{
    if (event->type() != kPumpEvent)
        return QObject::event(event);
    DispatchQueue::main().runTurn();
    return true;
}

} // namespace lamina
