#include "platform/view/FailureAlert.h"

#include "platform/base/Localization.h"
#include "platform/base/ShownText.h"
#include "platform/view/ScreenTransition_p.h"
#include "platform/view/UIAlertController.h"

#include <QCoreApplication>
#include <QDir>

#include <utility>

namespace lamina {

namespace {

using Screen = std::shared_ptr<UIViewController>;

/// The container or screen on which all that stands around `screen` rests.
Screen bottomOf(UIViewController& screen)
{
    Screen bottom = screen.shared_from_this();
    while (true) {
        Screen below = bottom->presentingViewController();
        if (!below)
            below = bottom->parentViewController();
        if (!below)
            return bottom;
        bottom = std::move(below);
    }
}

Screen topOf(Screen screen)
{
    while (Screen above = screen->presentedViewController())
        screen = std::move(above);
    return screen;
}

} // namespace

std::string shownPath(const std::string& path)
{
    const std::string home = QDir::homePath().toStdString();
    return shownText(path.starts_with(home + '/') ? '~' + path.substr(home.size()) : path, kReplacementSign);
}

std::string failureText(const Error& error)
{
    const std::string cause = localizedString(error.cause);
    return error.subject.empty() ? cause : localizedText("%1: %2.", {shownPath(error.subject), cause});
}

void presentOverTop(UIViewController& screen, std::shared_ptr<UIAlertController> alert)
{
    ScreenTransition::submitCompletion(
        [bottom = bottomOf(screen), alert = std::move(alert)] { topOf(bottom)->present(alert, true); });
}

void presentFailure(UIViewController& screen, std::string title, const Error& error)
{
    presentOverTop(screen, UIAlertController::make(std::move(title), failureText(error),
                                                   {{localizedString("OK"), UIAlertActionStyle::Default, {}}}));
}

void presentDamage(UIViewController& screen, const Error& warning)
{
    if (!warning.cause.empty())
        presentFailure(screen, localizedString(QT_TRANSLATE_NOOP("Lamina", "The photo is damaged")), warning);
}

} // namespace lamina
