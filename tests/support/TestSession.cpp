#include "TestSession.h"

#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QDir>
#include <QFile>

#include <csignal>

namespace lamina::test {

namespace {

const QString kName = QStringLiteral("org.lamina.lamina");

QProcessEnvironment environmentIn(const QString& home, TestSession::Display display)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* const variable :
         {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "DBUS_SESSION_BUS_ADDRESS", "XDG_ACTIVATION_TOKEN"})
        environment.remove(QLatin1String(variable));
    environment.insert(QStringLiteral("HOME"), home);
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), home);
    for (const char* const kind : {"CACHE", "CONFIG", "DATA", "STATE"})
        environment.insert(QStringLiteral("XDG_%1_HOME").arg(QLatin1String(kind)),
                           home + QLatin1Char('/') + QString::fromLatin1(kind).toLower());
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    if (display == TestSession::Display::Gone) {
        environment.insert(QStringLiteral("WAYLAND_DISPLAY"), QStringLiteral("gone"));
        environment.insert(QStringLiteral("DISPLAY"), QStringLiteral(":987"));
    }
    if (display == TestSession::Display::Offscreen)
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    return environment;
}

QString servicesIn(const QString& home, const std::string& program)
{
    const QString folder = home + QStringLiteral("/services");
    QDir().mkpath(folder);
    QFile file(folder + QLatin1Char('/') + kName + QStringLiteral(".service"));
    if (file.open(QIODevice::WriteOnly))
        file.write("[D-BUS Service]\nName=org.lamina.lamina\nExec=\"" + QByteArray::fromStdString(program) +
                   "\" --dbus-service\n");
    return folder;
}

} // namespace

TestSession::TestSession(const std::string& program, Display display)
    : m_program(program)
    , m_environment(environmentIn(m_home.path(), display))
    , m_daemon(std::make_unique<ExtraBus>(servicesIn(m_home.path(), program), m_environment))
    , m_bus(QDBusConnection::connectToBus(m_daemon->address(), m_home.path()))
{
    m_environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), m_daemon->address());
}

TestSession::~TestSession()
{
    if (const qint64 process = m_bus.isConnected() ? owner() : 0)
        ::kill(static_cast<pid_t>(process), SIGKILL);
    QDBusConnection::disconnectFromBus(m_home.path());
}

QDBusMessage TestSession::call(const char* method, const QVariantList& arguments)
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(kName, QStringLiteral("/org/lamina/lamina"),
                                       QStringLiteral("org.freedesktop.Application"), QLatin1String(method));
    message.setArguments(arguments);
    return m_bus.call(message, QDBus::Block, 40'000);
}

qint64 TestSession::owner()
{
    const QDBusReply<uint> process = m_bus.interface()->servicePid(kName);
    return process.isValid() ? process.value() : 0;
}

bool TestSession::waitForOwner(bool there)
{
    return waitUntil([&] { return (owner() != 0) == there; });
}

void TestSession::pauseBus(bool paused)
{
    ::kill(static_cast<pid_t>(m_daemon->process()), paused ? SIGSTOP : SIGCONT);
}

std::unique_ptr<QProcess> TestSession::start(const QStringList& arguments)
{
    auto process = std::make_unique<QProcess>();
    process->setProcessEnvironment(m_environment);
    process->start(QString::fromStdString(m_program), arguments);
    process->waitForStarted();
    return process;
}

std::string TestSession::path(const std::string& name) const
{
    return m_home.filePath(QString::fromStdString(name)).toStdString();
}

} // namespace lamina::test
