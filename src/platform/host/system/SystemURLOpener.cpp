#include "platform/host/system/SystemURLOpener.h"

#include "platform/application/UIApplication.h"
#include "platform/files/FileURL.h"
#include "platform/host/system/DetachedProgram.h"

#include <QDesktopServices>
#include <QGuiApplication>
#include <QUrl>

#include <algorithm>
#include <vector>

namespace lamina {

namespace {

struct Program {
    QString name;
    QStringList arguments;
};

bool openSettings()
{
    // The panels adapt to phones, where the same programs run under the desktops' mobile shells.
    std::vector<Program> programs = {
        {QStringLiteral("gnome-control-center"), {QStringLiteral("applications"), QStringLiteral("org.lamina.lamina")}},
        {QStringLiteral("plasma-open-settings"), {}},
        {QStringLiteral("systemsettings"), {}},
    };
    const QStringList desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(QLatin1Char(':'));
    if (desktops.contains(QLatin1String("KDE"), Qt::CaseInsensitive))
        std::rotate(programs.begin(), programs.begin() + 1, programs.end());
    return std::any_of(programs.begin(), programs.end(),
                       [](const Program& program) { return startProgram(program.name, program.arguments); });
}

bool mayOpen(const QUrl& url)
{
    const QString scheme = url.scheme();
    if (scheme == QLatin1String("http") || scheme == QLatin1String("https"))
        return !url.host().isEmpty();
    return scheme == QLatin1String("mailto") || pathOfFileURL(url.toEncoded().toStdString()).ok();
}

/// Qt's own way knows the portal of a sandbox, but not every platform of it has one.
bool openWithDesktop(const QUrl& url)
{
    const QString platform = QGuiApplication::platformName();
    const bool qtKnowsHow = platform == QLatin1String("xcb") || platform.startsWith(QLatin1String("wayland"));
    return (qtKnowsHow && QDesktopServices::openUrl(url)) ||
           startProgram(QStringLiteral("xdg-open"), {url.toString(QUrl::FullyEncoded)});
}

} // namespace

bool openSystemURL(const std::string& text)
{
    const QUrl url(QString::fromStdString(text), QUrl::StrictMode);
    if (url.scheme() + QLatin1Char(':') == QLatin1String(UIApplicationOpenSettingsURLString))
        return openSettings();
    return url.isValid() && mayOpen(url) && openWithDesktop(url);
}

void installSystemURLOpener()
{
    UIApplication::shared().setURLOpener(openSystemURL);
}

} // namespace lamina
