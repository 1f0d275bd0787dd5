#pragma once

#include "PrivateBus.h"
#include "WaitUntil.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariantList>

#include <memory>
#include <string>

namespace lamina::test {

/// A session of its own, with a home that goes with it: a bus that starts the application when it is called, and the
/// programs that are started in it. Those that still run at the end are killed.
class TestSession {
public:
    /// What programs of the session find to open windows on. Gone: the displays of a session that has ended.
    enum class Display { None, Gone, Offscreen };

    /// `program` is the application's executable.
    TestSession(const std::string& program, Display display);
    ~TestSession();

    /// This program's own connection to the bus.
    QDBusConnection& bus() { return m_bus; }
    /// Calls the application as org.freedesktop.Application, and waits for the answer; the bus starts it where it does
    /// not run.
    QDBusMessage call(const char* method, const QVariantList& arguments);
    /// The process that has the application's name; 0: none.
    qint64 owner();
    /// Waits, without an event loop, until that is one; or none.
    bool waitForOwner(bool there = true);

    /// As when the user's session ends.
    void endBus() { m_daemon->end(); }
    /// The bus takes connections and says nothing any more, or goes on.
    void pauseBus(bool paused = true);
    /// Another start of the application, with what it writes in its channels.
    std::unique_ptr<QProcess> start(const QStringList& arguments);
    const QProcessEnvironment& environment() const { return m_environment; }
    /// Below the home.
    std::string path(const std::string& name) const;

private:
    const std::string m_program;
    QTemporaryDir m_home;
    QProcessEnvironment m_environment;
    std::unique_ptr<ExtraBus> m_daemon;
    QDBusConnection m_bus;
};

} // namespace lamina::test
