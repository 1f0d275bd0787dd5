#include "platform/host/MainLoop.h"

#include "platform/base/Clock.h"
#include "platform/base/DispatchQueue.h"

#include <QCoreApplication>
#include <QEvent>

namespace lamina {

namespace {

const QEvent::Type kPumpEvent = static_cast<QEvent::Type>(QEvent::registerEventType());

MainLoop* g_current = nullptr;

} // namespace

MainLoop::MainLoop()
{
    g_current = this;
    DispatchQueue::main().bindToCurrentThread();
    DispatchQueue::main().setWakeHandler([this] { QCoreApplication::postEvent(this, new QEvent(kPumpEvent)); });
}

MainLoop::~MainLoop()
{
    DispatchQueue::main().setWakeHandler({});
    g_current = nullptr;
}

MainLoop* MainLoop::current()
{
    return g_current;
}

bool MainLoop::event(QEvent* event)
{
    if (event->type() != kPumpEvent && event->type() != QEvent::Timer)
        return QObject::event(event);
    DispatchQueue::main().runTurn();
    lookWhileSilent();
    return true;
}

/// Timers that nobody tells of are looked for.
void MainLoop::lookWhileSilent()
{
    constexpr int kLookMilliseconds = 10;
    if (!SteadyClock::instance()->isSilent())
        m_look.stop();
    else if (!m_look.isActive())
        m_look.start(kLookMilliseconds, this);
}

} // namespace lamina
