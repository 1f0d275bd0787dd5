#include "PrivateBus.h"
#include "TestPaths.h"

#include <QFile>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <unistd.h>
#include <vector>

namespace lamina::test {

namespace {

constexpr const char* kMark = "LAMINA_PRIVATE_BUS";
const std::string kConfiguration = testData("../support/session-bus.conf");

/// That of all buses here, with this folder of services.
QByteArray configurationWith(const QString& services)
{
    QFile plain(QString::fromStdString(kConfiguration));
    QByteArray text = plain.open(QIODevice::ReadOnly) ? plain.readAll() : QByteArray();
    if (!services.isEmpty())
        text.replace("</busconfig>", "<servicedir>" + services.toUtf8() + "</servicedir></busconfig>");
    return text;
}

} // namespace

void enterPrivateBus(char** arguments)
{
    std::vector<char*> words;
    std::string runner = "dbus-run-session";
    std::string option = std::string("--config-file=") + kConfiguration;
    std::string end = "--";
    for (std::string* const word : {&runner, &option, &end})
        words.push_back(word->data());
    for (char** argument = arguments; *argument; ++argument) {
        if (std::strcmp(*argument, "--gtest_list_tests") == 0)
            return;
        words.push_back(*argument);
    }
    words.push_back(nullptr);
    if (std::getenv(kMark))
        return;
    ::setenv(kMark, "1", 1);
    ::execvp(runner.c_str(), words.data());
    std::perror("dbus-run-session");
    std::exit(1); // without a bus of their own the tests would meet the user's
}

ExtraBus::ExtraBus(const QString& services, const QProcessEnvironment& environment)
{
    QFile configuration(m_folder.filePath(QStringLiteral("bus.conf")));
    if (configuration.open(QIODevice::WriteOnly))
        configuration.write(configurationWith(services));
    configuration.close();
    m_daemon.setProcessEnvironment(environment);
    m_daemon.setStandardErrorFile(QProcess::nullDevice());
    m_daemon.start(QStringLiteral("dbus-daemon"), {QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                                                   QStringLiteral("--config-file=") + configuration.fileName()});
    if (m_daemon.waitForReadyRead(10'000))
        m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
}

ExtraBus::~ExtraBus()
{
    end();
}

void ExtraBus::end()
{
    m_daemon.kill();
    m_daemon.waitForFinished();
}

} // namespace lamina::test
