#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QTemporaryDir>

namespace lamina::test {

/// Gives the process a session bus of its own, on which nobody else is and no service starts by itself: runs the
/// program again under `dbus-run-session`, and returns in that second run. First thing in `main`, with its arguments.
/// Listing the tests needs no bus and goes on without.
void enterPrivateBus(char** arguments);

/// One more bus, which ends with this object or before.
class ExtraBus {
public:
    /// It starts the services of that folder, in this environment; empty: none.
    explicit ExtraBus(const QString& services = {},
                      const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment());
    ~ExtraBus();

    /// Empty when it could not be started.
    const QString& address() const { return m_address; }
    /// The daemon's process.
    qint64 process() const { return m_daemon.processId(); }
    void end();

private:
    QTemporaryDir m_folder;
    QProcess m_daemon;
    QString m_address;
};

} // namespace lamina::test
