#include "platform/application/ApplicationRequest.h"
#include "platform/base/Log.h"
#include "platform/base/Result.h"
#include "platform/base/ShownText.h"
#include "platform/base/StandardStreams.h"
#include "platform/files/UnexpectedEnd.h"
#include "platform/host/Application.h"
#include "platform/host/ApplicationLife.h"
#include "platform/host/CommandLine.h"
#include "platform/host/DisplayProbe.h"
#include "platform/host/GuardedApplication.h"
#include "platform/host/ImageConversion.h"
#include "platform/host/ServiceStart.h"
#include "platform/host/WindowActivation.h"
#include "platform/host/services/ApplicationService.h"
#include "platform/host/services/SessionName.h"
#include "platform/host/system/TerminationSignals.h"
#include "platform/image/named/NamedPictures.h"

#include <QFile>
#include <QGuiApplication>
#include <QIcon>
#include <QPixmap>
#include <QQuickWindow>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>

namespace {

using namespace lamina;

/// Longer the window does not wait for the bus to say whether there is another one.
constexpr std::chrono::milliseconds kBusPatience{300};
/// Bytes of what another process says.
constexpr std::size_t kLongestAnswer = 200;

/// Without a graphics card the window is drawn faster by Qt's own painter than by an emulated one.
void chooseRenderer()
{
    if (qEnvironmentVariableIsSet("QT_QUICK_BACKEND") || qEnvironmentVariableIsSet("QSG_RHI_BACKEND"))
        return;
    for (int card = 128; card < 144; ++card)
        if (QFile::exists(QStringLiteral("/dev/dri/renderD%1").arg(card)))
            return;
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
}

/// Qt passes libdbus a call that doesn't exist where a bus goes while a signal is subscribed to, and libdbus ends the
/// process for it. Told not to, it only complains, and Qt finds the bus gone.
void outliveTheBus()
{
    if (constexpr const char* kFatal = "DBUS_FATAL_WARNINGS"; !qEnvironmentVariableIsSet(kFatal))
        qputenv(kFatal, "0");
}

void setNames()
{
    QGuiApplication::setApplicationName(QStringLiteral("lamina"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Lamina"));
    QGuiApplication::setApplicationVersion(QStringLiteral(LAMINA_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("org.lamina.lamina"));
}

void logMessage(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    if (type == QtDebugMsg || type == QtInfoMsg)
        logInfo(text.toStdString());
    else if (type == QtWarningMsg)
        logWarning(text.toStdString());
    else
        logError(text.toStdString());
}

QStringList textsOf(int argc, char** argv)
{
    QStringList texts;
    for (int i = 0; i < argc; ++i)
        texts.append(QString::fromLocal8Bit(argv[i]));
    return texts;
}

bool isAmong(const QStringList& words, std::initializer_list<const char*> options)
{
    return std::ranges::any_of(options, [&](const char* option) { return words.contains(QLatin1String(option)); });
}

/// Whether a window that is open already has taken what this start asks for.
bool isHandedOver(const SessionName& name, const LaunchOptions& options, const std::string& token)
{
    if (name.waitFor(kBusPatience) != SessionName::State::Taken)
        return false;
    ApplicationRequest request = requestOf(options);
    request.activationToken = token;
    const Outcome handed = handOver(*name.connection(), request);
    if (!handed)
        logWarning("the window that is open does not take it: " +
                   beginningOf(handed.error().message(), kLongestAnswer));
    return handed.ok();
}

std::unique_ptr<Application> makeWindow(const LaunchOptions& options)
{
    QGuiApplication::setWindowIcon(
        QIcon(QPixmap::fromImage(qImage(imageNamed("app-scalable", {128, 128}, 1).cgImage()))));
    return std::make_unique<Application>(options);
}

int runWindow(SessionName& name, ApplicationService& service, const LaunchOptions& options)
{
    const TerminationSignals termination;
    const std::unique_ptr<Application> application = makeWindow(options);
    application->show();
    service.setHandler([&](const ApplicationRequest& request) { return application->perform(request); });
    const int code = QGuiApplication::exec();
    leaveBus(name, service); // first, so that nothing is handed to a process that is going
    return code;
}

/// Wrong usage, --help and --version need no display, and the bus may want something of us that needs none.
int runWithoutDisplay(SessionName& name, ApplicationService& service, int argc, char** argv)
{
    const CommandLine line = parseCommandLine(textsOf(argc, argv));
    if (line.leave)
        return *line.leave;
    if (line.isService) {
        const QCoreApplication qt(argc, argv);
        return runAsService(name, service, std::make_shared<ApplicationLife>(), {});
    }
    writeMessage("lamina-app: there is no display to open a window on\n");
    return exitcode::kFailed;
}

int runWithDisplay(SessionName& name, ApplicationService& service, int argc, char** argv)
{
    qInstallMessageHandler(logMessage);
    chooseRenderer();
    const std::string token = tokenOfEnvironment();
    // The bus answers while Qt makes the application object, and what is called then waits for the event loop.
    auto life = std::make_shared<ApplicationLife>();
    if (!isAmong(textsOf(argc, argv), {"--dbus-service", "-h", "--help", "--help-all", "-v", "--version"})) {
        life->exportTo(name);
        name.begin();
    }
    GuardedApplication qt(argc, argv);
    CommandLine line = parseCommandLine(QGuiApplication::arguments());
    if (line.leave)
        return *line.leave;
    line.options.life = std::move(life);
    if (line.isService)
        return runAsService(name, service, line.options.life, makeWindow);
    if (!line.ownWindow && isHandedOver(name, line.options, token))
        return exitcode::kGood;
    return runWindow(name, service, line.options);
}

int run(int argc, char** argv)
{
    outliveTheBus();
    setNames();
    ApplicationService service;
    SessionName name;
    name.addExport([&service](QDBusConnection& bus) { service.exportOn(bus); });
    const int code =
        displayIsThere() ? runWithDisplay(name, service, argc, argv) : runWithoutDisplay(name, service, argc, argv);
    if (!name.isStuck())
        return code;
    // A bus that has not answered to this day: at its end Qt would wait for it for half a minute.
    std::fflush(nullptr);
    std::_Exit(code);
}

} // namespace

int main(int argc, char** argv)
{
    openStandardStreams();
    installLastNets("lamina-app", false);
    return withoutExceptions("lamina-app", [&] { return run(argc, argv); });
}
