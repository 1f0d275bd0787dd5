#include "platform/base/Log.h"
#include "platform/base/Result.h"
#include "platform/base/ShownText.h"
#include "platform/base/StandardStreams.h"
#include "platform/files/FileURL.h"
#include "platform/files/UnexpectedEnd.h"
#include "platform/host/Application.h"
#include "platform/host/GuardedApplication.h"
#include "platform/host/ImageConversion.h"
#include "platform/host/system/TerminationSignals.h"
#include "platform/image/named/NamedPictures.h"

#include <QCommandLineParser>
#include <QFile>
#include <QGuiApplication>
#include <QIcon>
#include <QPixmap>
#include <QQuickWindow>

#include <cstdio>
#include <optional>
#include <string>

namespace {

using lamina::LaunchOptions;

constexpr int kGood = 0;
constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;
constexpr int kNotWritten = 4;

/// The values of --screen.
QStringList screens()
{
    return {QStringLiteral("home"),  QStringLiteral("two"),    QStringLiteral("three"),
            QStringLiteral("blend"), QStringLiteral("picker"), QStringLiteral("live")};
}
constexpr const char* kScreenWords = "home, two, three, blend, picker or live";

/// Qt ends the process when it finds no display; ours says so in one line.
bool displayIsThere()
{
    for (const char* const variable : {"QT_QPA_PLATFORM", "WAYLAND_DISPLAY", "WAYLAND_SOCKET", "DISPLAY"})
        if (!qEnvironmentVariableIsEmpty(variable))
            return true;
    return false;
}

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
        lamina::logInfo(text.toStdString());
    else if (type == QtWarningMsg)
        lamina::logWarning(text.toStdString());
    else
        lamina::logError(text.toStdString());
}

std::optional<QSize> sizeOf(const QString& text)
{
    const QStringList sides = text.split(QLatin1Char('x'));
    const QSize size = sides.size() == 2 ? QSize(sides[0].toInt(), sides[1].toInt()) : QSize();
    return size.isEmpty() ? std::nullopt : std::optional(size);
}

int complain(const QString& text)
{
    lamina::writeMessage("lamina-app: " + lamina::shownText(text.toStdString()) + "\n");
    return kWrongUsage;
}

/// To standard output, as the answer to the command line.
int print(const std::string& text)
{
    if (std::fputs(text.c_str(), stdout) >= 0 && std::fflush(stdout) == 0)
        return kGood;
    lamina::writeMessage("lamina-app: standard output: can't be written\n");
    return kNotWritten;
}

/// The command line as options, or the exit code with which to leave at once.
struct Parsed {
    LaunchOptions options;
    std::optional<int> leave;
};

Parsed parse(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Composes photos. One or two given photos begin a blend, three a collage; --screen two makes one of two. "
        "--screen live plays a movie."));
    const QCommandLineOption screen(
        QStringLiteral("screen"),
        QStringLiteral("Opens %1. The picker is the one for three photos, over home.").arg(QLatin1String(kScreenWords)),
        QStringLiteral("screen"), QStringLiteral("home"));
    const QCommandLineOption photos(
        QStringLiteral("photos"),
        QStringLiteral("Photos beside those in your own folder; may be given again. Choosing one starts in the first."),
        QStringLiteral("folder"));
    const QCommandLineOption size(QStringLiteral("size"), QStringLiteral("Of the window, in points."),
                                  QStringLiteral("WIDTHxHEIGHT"));
    parser.addOptions({screen, photos, size});
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption version = parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("photo"),
                                 QStringLiteral("A picture file, or the movie for --screen live."),
                                 QStringLiteral("[photo...]"));

    if (!parser.parse(arguments))
        return {{}, complain(parser.errorText())};
    if (parser.isSet(help))
        return {{}, print(parser.helpText().toStdString())};
    if (parser.isSet(version))
        return {{}, print("lamina-app " LAMINA_VERSION "\n")};
    Parsed parsed;
    parsed.options.screen = parser.value(screen).toStdString();
    if (!screens().contains(parser.value(screen)))
        return {
            {},
            complain(QStringLiteral("--screen: %1, not '%2'").arg(QLatin1String(kScreenWords), parser.value(screen)))};
    for (const QString& folder : parser.values(photos))
        parsed.options.photosFolders.push_back(folder.toStdString());
    if (parser.isSet(size)) {
        const auto wanted = sizeOf(parser.value(size));
        if (!wanted)
            return {{}, complain(QStringLiteral("--size: WIDTHxHEIGHT, such as 360x720"))};
        parsed.options.size = *wanted;
    }
    for (const QString& file : parser.positionalArguments()) {
        const lamina::Result<std::string> path = lamina::pathOfFileURL(file.toStdString());
        parsed.options.files.push_back(path ? *path : file.toStdString());
    }
    return parsed;
}

QStringList textsOf(int argc, char** argv)
{
    QStringList texts;
    for (int i = 0; i < argc; ++i)
        texts.append(QString::fromLocal8Bit(argv[i]));
    return texts;
}

int run(int argc, char** argv)
{
    setNames();
    // Wrong usage, --help and --version need no display. Qt takes its own options out first.
    if (!displayIsThere()) {
        if (const Parsed parsed = parse(textsOf(argc, argv)); parsed.leave)
            return *parsed.leave;
        lamina::writeMessage("lamina-app: there is no display to open a window on\n");
        return kFailed;
    }
    qInstallMessageHandler(logMessage);
    chooseRenderer();
    lamina::GuardedApplication qt(argc, argv);
    const Parsed parsed = parse(QGuiApplication::arguments());
    if (parsed.leave)
        return *parsed.leave;
    QGuiApplication::setWindowIcon(
        QIcon(QPixmap::fromImage(lamina::qImage(lamina::imageNamed("app-scalable", {128, 128}, 1).cgImage()))));
    lamina::Application application(parsed.options);
    const lamina::TerminationSignals termination;
    application.show();
    return QGuiApplication::exec();
}

} // namespace

int main(int argc, char** argv)
{
    lamina::openStandardStreams();
    lamina::installLastNets("lamina-app", false);
    return lamina::withoutExceptions("lamina-app", [&] { return run(argc, argv); });
}
