#pragma once

#include <QProcess>
#include <QString>

namespace lamina::test {

/// Gives the process a session bus of its own, on which nobody else is and no service starts by itself: runs the
/// program again under `dbus-run-session`, and returns in that second run. First thing in `main`, with its arguments.
/// Listing the tests needs no bus and goes on without.
void enterPrivateBus(char** arguments);

/// One more bus, which ends with this object or before.
class ExtraBus {
public:
    ExtraBus();
    ~ExtraBus();

    /// Empty when it could not be started.
    const QString& address() const { return m_address; }
    void end();

private:
    QProcess m_daemon;
    QString m_address;
};

} // namespace lamina::test
