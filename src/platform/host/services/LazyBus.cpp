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
        awaitBusQueue();
}

void LazyBus::with(Work work, std::function<void()> without)
{
    Wish wish{std::move(work), std::move(without)};
    if (m_state == State::Settled)
        return run(wish);
    m_waiting.push_back(std::move(wish));
    if (std::exchange(m_state, State::Connecting) == State::Unwanted)
        inBackground<QDBusConnection>(busQueue(), this, m_connector,
                                      [this](const QDBusConnection& bus) { found(bus); });
}

void LazyBus::found(const QDBusConnection& bus)
{
    m_state = State::Settled;
    if (bus.isConnected())
        m_bus = bus;
    for (const Wish& wish : std::exchange(m_waiting, {}))
        run(wish);
}

void LazyBus::run(const Wish& wish)
{
    if (m_bus)
        wish.work(*m_bus);
    else if (wish.without)
        wish.without();
}

} // namespace lamina
