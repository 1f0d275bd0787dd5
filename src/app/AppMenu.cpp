#include "app/AppMenu.h"

#include "app/LiveViewController.h"
#include "app/MainStoryboard.h"
#include "app/PhotoFoldersMenu.h"
#include "platform/base/Localization.h"
#include "platform/view/UIAlertController.h"
#include "platform/view/UIStoryboard.h"

#include <QCoreApplication>

#include <memory>

namespace lamina {

void presentAppMenu(UIViewController& over)
{
    using Page = AboutViewController::Page;
    const auto opens = [screen = over.weak_from_this()](Page page) {
        return [screen, page] {
            if (const auto still = screen.lock())
                presentAbout(*still, page);
        };
    };
    const auto opensFolders = [screen = over.weak_from_this()] {
        if (const auto still = screen.lock())
            presentPhotoFolders(*still);
    };
    const auto opensLive = [screen = over.weak_from_this()] {
        if (const auto still = screen.lock())
            presentLive(*still);
    };
    over.present(
        UIAlertController::make(
            localizedString("Menu"), "",
            {{localizedString(QT_TRANSLATE_NOOP("Lamina", "Live filters")), UIAlertActionStyle::Default, opensLive},
             {localizedString("Keys"), UIAlertActionStyle::Default, opens(Page::Keys)},
             {localizedString(QT_TRANSLATE_NOOP("Lamina", "Photo folders…")), UIAlertActionStyle::Default,
              opensFolders},
             {localizedString("About Lamina"), UIAlertActionStyle::Default, opens(Page::About)},
             {localizedString("Cancel"), UIAlertActionStyle::Cancel, {}}},
            UIAlertControllerStyle::ActionSheet),
        true);
}

void presentLive(UIViewController& over, const std::string& movie)
{
    const auto live = UIStoryboard::named(kMainStoryboard)->instantiate<LiveViewController>(scene::kLive);
    if (!live)
        return;
    live->setMovie(movie);
    over.present(live, true);
}

void presentAbout(UIViewController& over, AboutViewController::Page page)
{
    if (auto* const shown = dynamic_cast<AboutViewController*>(&over)) {
        shown->setPage(page);
        return;
    }
    const auto card = UIStoryboard::named(kMainStoryboard)->instantiate<AboutViewController>(scene::kAbout);
    if (!card)
        return;
    card->setPage(page);
    over.present(card, true);
}

} // namespace lamina
