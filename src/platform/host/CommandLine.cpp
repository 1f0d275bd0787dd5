#include "platform/host/CommandLine.h"

#include "platform/base/Result.h"
#include "platform/base/ShownText.h"
#include "platform/base/StandardStreams.h"
#include "platform/files/FileURL.h"

#include <QCommandLineParser>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <system_error>

namespace lamina {

namespace {

/// The values of --screen.
QStringList screens()
{
    return {QStringLiteral("home"),  QStringLiteral("two"),    QStringLiteral("three"),
            QStringLiteral("blend"), QStringLiteral("picker"), QStringLiteral("live")};
}
constexpr const char* kScreenWords = "home, two, three, blend, picker or live";

std::optional<QSize> sizeOf(const QString& text)
{
    const QStringList sides = text.split(QLatin1Char('x'));
    const QSize size = sides.size() == 2 ? QSize(sides[0].toInt(), sides[1].toInt()) : QSize();
    return size.isEmpty() ? std::nullopt : std::optional(size);
}

CommandLine leaveWith(int code)
{
    CommandLine line;
    line.leave = code;
    return line;
}

CommandLine complain(const QString& text)
{
    writeMessage("lamina-app: " + shownText(text.toStdString()) + "\n");
    return leaveWith(exitcode::kWrongUsage);
}

/// To standard output, as the answer to the command line.
CommandLine print(const std::string& text)
{
    if (std::fputs(text.c_str(), stdout) >= 0 && std::fflush(stdout) == 0)
        return leaveWith(exitcode::kGood);
    writeMessage("lamina-app: standard output: can't be written\n");
    return leaveWith(exitcode::kNotWritten);
}

/// Whether a window that is open already has an entry of that name, or shows it anyway.
bool isOfHome(const std::string& screen)
{
    return screen == "home" || std::ranges::find(kHomeActions, screen) != kHomeActions.end();
}

struct Options {
    QCommandLineOption screen{
        QStringLiteral("screen"),
        QStringLiteral("Opens %1. The picker is the one for three photos, over home.").arg(QLatin1String(kScreenWords)),
        QStringLiteral("screen"), QStringLiteral("home")};
    QCommandLineOption photos{
        QStringLiteral("photos"),
        QStringLiteral("Photos beside those in your own folder; may be given again. Choosing one starts in the first."),
        QStringLiteral("folder")};
    QCommandLineOption size{QStringLiteral("size"), QStringLiteral("Of the window, in points."),
                            QStringLiteral("WIDTHxHEIGHT")};
    QCommandLineOption newWindow{
        QStringLiteral("new-window"),
        QStringLiteral("Opens a window of its own where one is open, as --photos, --size and the screens picker and "
                       "live do.")};
    QCommandLineOption service{
        QStringLiteral("dbus-service"),
        QStringLiteral("Opens no window until one is asked for by the session bus, which starts Lamina in this way.")};
};

void readFiles(const QStringList& words, LaunchOptions& options)
{
    for (const QString& file : words) {
        const Result<std::string> path = pathOfFileURL(file.toStdString());
        options.files.push_back(path ? *path : file.toStdString());
    }
}

} // namespace

CommandLine parseCommandLine(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Composes photos. One or two given photos begin a blend, three a collage; --screen two makes one of two. "
        "--screen live plays a movie. Where a window of Lamina is open already, that one takes the photos."));
    const Options known;
    parser.addOptions({known.screen, known.photos, known.size, known.newWindow, known.service});
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption version = parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("photo"),
                                 QStringLiteral("A picture file, or the movie for --screen live."),
                                 QStringLiteral("[photo...]"));

    if (!parser.parse(arguments))
        return complain(parser.errorText());
    if (parser.isSet(help))
        return print(parser.helpText().toStdString());
    if (parser.isSet(version))
        return print("lamina-app " LAMINA_VERSION "\n");
    CommandLine line;
    const QString screen = parser.value(known.screen);
    if (!screens().contains(screen))
        return complain(QStringLiteral("--screen: %1, not '%2'").arg(QLatin1String(kScreenWords), screen));
    line.options.screen = screen.toStdString();
    for (const QString& folder : parser.values(known.photos))
        line.options.photosFolders.push_back(folder.toStdString());
    if (parser.isSet(known.size)) {
        const auto wanted = sizeOf(parser.value(known.size));
        if (!wanted)
            return complain(QStringLiteral("--size: WIDTHxHEIGHT, such as 360x720"));
        line.options.size = *wanted;
    }
    readFiles(parser.positionalArguments(), line.options);
    line.ownWindow = parser.isSet(known.newWindow) || parser.isSet(known.photos) || parser.isSet(known.size) ||
                     !isOfHome(line.options.screen);
    line.isService = parser.isSet(known.service);
    return line;
}

ApplicationRequest requestOf(const LaunchOptions& options)
{
    ApplicationRequest request;
    if (options.screen != "home")
        request.action = options.screen;
    for (const std::string& file : options.files) {
        std::error_code failure;
        request.photos.push_back(std::filesystem::absolute(file, failure).string());
    }
    return request;
}

} // namespace lamina
