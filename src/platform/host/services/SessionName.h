#pragma once

#include "platform/host/system/Portal.h"

#include <QDBusConnection>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace lamina {

/// The application's name on the session bus, which is that of its desktop file.
inline const QString kApplicationBusName = QStringLiteral("org.lamina.lamina");

/// Makes a connection of its own to the session bus, which may be done before there is an application object. Where the
/// bus is, the environment is asked at this call and not by the background, beside which Qt changes it. Not connected
/// when there is no bus; none is started.
BusConnector ownSessionBus();

/// The application's name on the session bus, by which others call it: only one process of a session has it. Connects
/// and asks in the background, so that a bus which does not answer keeps nobody waiting. Works before there is an
/// application object; calls from the bus arrive once there is an event loop. Main thread.
class SessionName {
public:
    /// How the application stands to its name.
    enum class State {
        Asking, ///< the bus has not answered yet
        Owned,  ///< it is ours
        Taken,  ///< another process has it
        NoBus,  ///< there is no bus, or it gives no names
    };

    explicit SessionName(BusConnector connector = ownSessionBus(), QString name = kApplicationBusName);
    /// Gives the name back. Waits for a connection that is just being made: Qt's own end must not overtake it.
    ~SessionName();
    SessionName(const SessionName&) = delete;
    SessionName& operator=(const SessionName&) = delete;

    /// Puts objects on the bus: `registerObject` of plain objects of the main thread, with their slots and no adaptors,
    /// since it runs on the bus's queue, at the latest when this is gone: the objects outlive this, or the function
    /// holds what it needs.
    using Export = std::function<void(QDBusConnection& bus)>;
    /// Before `begin`: run once there is a connection and before the name is asked for, so that whoever calls the name
    /// finds all of it. Afterwards: run as soon as there is a connection. Without a bus never.
    void addExport(Export objects);

    /// Connects, exports and asks for the name. The second time nothing happens.
    void begin();
    /// How it stands, after `time` at the latest.
    State waitFor(std::chrono::milliseconds time) const;
    State state() const { return waitFor({}); }
    /// Whether it has been asked for, and the bus still keeps silent.
    bool isStuck() const { return m_begun && state() == State::Asking; }

    /// The connection that has the name, or knows who has it; none while Asking and with NoBus.
    std::optional<QDBusConnection> connection() const;

    /// Gives the name back, so that a process that starts from now on is not called here. What was called before
    /// arrives still. Nothing more is exported. Waits for the bus, a second at most; a name that the bus is still being
    /// asked for is given back as soon as it is there.
    void release();

private:
    struct Asked;

    BusConnector m_connector;
    QString m_name;
    std::shared_ptr<Asked> m_asked; ///< shared with the bus's queue
    bool m_begun = false;
};

} // namespace lamina
