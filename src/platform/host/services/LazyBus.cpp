#include "platform/host/services/LazyBus.h"

#include "platform/host/system/BackgroundWork.h"

#include <utility>

namespace lamina {

LazyBus::LazyBus(BusConnector connector, QObject* parent)
    : QObject(parent)
    , m_connector(std::move(connector))
{
}

LazyBus::~LazyBus()
{
    if (m_state == State::Connecting)
        busQueue().sync([] {});
}

void LazyBus::with(Work work)
{
    if (m_bus)
        return work(*m_bus);
    if (m_state == State::Settled)
        return;
    m_waiting.push_back(std::move(work));
    if (std::exchange(m_state, State::Connecting) == State::Unwanted)
        inBackground<QDBusConnection>(busQueue(), this, m_connector,
                                      [this](const QDBusConnection& bus) { found(bus); });
}

void LazyBus::found(const QDBusConnection& bus)
{
    m_state = State::Settled;
    if (bus.isConnected())
        m_bus = bus;
    for (const Work& work : std::exchange(m_waiting, {}))
        if (m_bus)
            work(*m_bus);
}

} // namespace lamina
