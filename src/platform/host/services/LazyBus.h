#pragma once

#include "platform/host/system/Portal.h"

#include <QDBusConnection>
#include <QObject>

#include <functional>
#include <optional>
#include <vector>

namespace lamina {

/// The session bus for who may never need it: connected in the background when it is first wanted. Main thread.
class LazyBus : public QObject {
public:
    explicit LazyBus(BusConnector connector = sessionBus, QObject* parent = nullptr);
    /// Waits for a connection that is just being made, see `awaitBusQueue`.
    ~LazyBus() override;

    using Work = std::function<void(QDBusConnection& bus)>;
    /// Runs `work` with the bus, at once where it is connected, else on a later turn of the main queue, in the order of
    /// calls. Without a bus `without` runs in its place; when this object is gone by then, neither.
    void with(Work work, std::function<void()> without = {});

    /// The connection where there is one by now, else null.
    QDBusConnection* connection() { return m_bus ? &*m_bus : nullptr; }

private:
    enum class State { Unwanted, Connecting, Settled };
    struct Wish {
        Work work;
        std::function<void()> without;
    };

    void found(const QDBusConnection& bus);
    void run(const Wish& wish);

    BusConnector m_connector;
    State m_state = State::Unwanted;
    std::optional<QDBusConnection> m_bus;
    std::vector<Wish> m_waiting;
};

} // namespace lamina
