#include "app/PhotoFoldersMenu.h"

#include "app/PhotoFolders.h"
#include "platform/base/Localization.h"
#include "platform/view/FailureAlert.h"
#include "platform/view/UIAlertController.h"
#include "platform/view/UIDocumentPickerViewController.h"

#include <QCoreApplication>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace lamina {

namespace {

using Screen = std::weak_ptr<UIViewController>;

/// From then on the library has these, or an alert says why not.
void keep(const Screen& screen, const std::vector<std::string>& folders)
{
    const Outcome kept = keepPhotoFolders(folders);
    if (const auto still = screen.lock(); still && !kept)
        presentFailure(*still, localizedString(QT_TRANSLATE_NOOP("Lamina", "Can’t keep the folders")), kept.error());
}

void askForFolder(const Screen& screen)
{
    const auto still = screen.lock();
    if (!still)
        return;
    const auto answer = [screen](const std::optional<UIDocumentPlace>& place) {
        if (!place)
            return;
        std::vector<std::string> folders = keptPhotoFolders();
        folders.push_back(place->path);
        keep(screen, folders);
    };
    still->present(std::make_shared<UIDocumentPickerViewController>(std::string(), answer), true);
}

void askToRemove(const Screen& screen, const std::string& folder)
{
    const auto still = screen.lock();
    if (!still)
        return;
    const auto remove = [screen, folder] {
        std::vector<std::string> folders = keptPhotoFolders();
        std::erase(folders, folder);
        keep(screen, folders);
    };
    still->present(
        UIAlertController::make(
            shownPath(folder),
            localizedString(
                QT_TRANSLATE_NOOP("Lamina", "Take this folder out of the library? Its photos stay where they are.")),
            {{localizedString(QT_TRANSLATE_NOOP("Lamina", "Take out")), UIAlertActionStyle::Destructive, remove},
             {localizedString("Keep"), UIAlertActionStyle::Cancel, {}}}),
        true);
}

} // namespace

void presentPhotoFolders(UIViewController& over)
{
    const Screen screen = over.weak_from_this();
    std::vector<UIAlertAction> actions;
    for (const std::string& folder : keptPhotoFolders())
        actions.push_back(
            {shownPath(folder), UIAlertActionStyle::Default, [screen, folder] { askToRemove(screen, folder); }});
    actions.push_back({localizedString(QT_TRANSLATE_NOOP("Lamina", "Add a folder…")), UIAlertActionStyle::Default,
                       [screen] { askForFolder(screen); }});
    actions.push_back({localizedString("Cancel"), UIAlertActionStyle::Cancel, {}});
    over.present(
        UIAlertController::make(localizedString(QT_TRANSLATE_NOOP("Lamina", "Photo folders")),
                                localizedString(QT_TRANSLATE_NOOP(
                                    "Lamina", "Their photos belong to the library, beside those in your own folder.")),
                                std::move(actions), UIAlertControllerStyle::ActionSheet),
        true);
}

} // namespace lamina
