#include "export/ExportFinish.h"

#include "export/ExportScenes.h"
#include "export/ExporterViewController.h"
#include "export/SaveModelDetails.h"
#include "export/SavingTypeController.h"
#include "export/SavingTypes.h"
#include "export/ShareController.h"
#include "export/functions/ExportWork.h"
#include "platform/base/Causes.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/Localization.h"
#include "platform/base/Result.h"
#include "platform/view/FailureAlert.h"
#include "platform/view/UIStoryboard.h"
#include "platform/view/UIViewController.h"

#include <string>
#include <utility>

namespace lamina {

namespace {

/// Over the editor, which stays in sight.
void presentOver(UIViewController& editor, const std::shared_ptr<UIViewController>& screen)
{
    screen->setModalPresentationStyle(UIModalPresentationStyle::OverCurrentContext);
    editor.present(screen, true);
}

void presentSaveFailure(UIViewController& editor, const Error& error)
{
    presentFailure(editor, localizedString("Can’t save the picture"), error);
}

} // namespace

ExportFinish::ExportFinish(UIViewController& editor, ExportedWork work)
    : m_editor(editor)
    , m_work(std::move(work))
{
}

void ExportFinish::openChooser()
{
    if (m_editor.presentedViewController())
        return;
    const auto chooser = UIStoryboard::named(kMainStoryboard)->instantiate<SavingTypeController>(exportscene::kChooser);
    if (!chooser)
        return;
    chooser->setIsimage(true);
    chooser->setDelegate(weak_from_this());
    presentOver(m_editor, chooser);
}

void ExportFinish::selectedtypeWithType(SavingtypeMethod type)
{
    flattenAndPresent(type);
}

void ExportFinish::methodCallWithType(SavingtypeMethod type)
{
    flattenAndPresent(type);
}

void ExportFinish::flattenAndPresent(SavingtypeMethod type)
{
    const UIImage picture = m_work.flatten();
    if (!picture)
        return presentSaveFailure(m_editor, {localizedString("The picture"), cause::kNoMemory});
    presentControllerWithType(static_cast<int>(type), picture);
}

void ExportFinish::presentControllerWithType(int type, const UIImage& image)
{
    const auto known = savingTypeOf(type);
    const auto exporter = known ? UIStoryboard::named(kMainStoryboard)
                                      ->instantiate<ExporterViewController>(kExporterScenes[indexOf(*known)])
                                : nullptr;
    if (!exporter)
        return;
    exporter->setDelegate(weak_from_this());
    exporter->setSavingDelegate(weak_from_this());
    exporter->setShareImage(image);
    presentOver(m_editor, exporter);
}

void ExportFinish::dataPassingDetails(const SaveModelDetails& details)
{
    DispatchQueue::main().async([weak = weak_from_this(), details] {
        if (const auto self = weak.lock())
            self->takeResult(details);
    });
}

void ExportFinish::takeResult(const SaveModelDetails& details)
{
    const auto goOn = [weak = weak_from_this(), details] {
        if (const auto self = weak.lock())
            self->presentShareScreen(details);
    };
    if (m_editor.presentedViewController())
        m_editor.dismiss(true, goOn);
    else
        goOn();
}

void ExportFinish::presentShareScreen(const SaveModelDetails& details)
{
    if (details.saveType != SavingtypeMethod::jpg && details.sharedURL.empty())
        return presentSaveFailure(m_editor, {{}, QT_TRANSLATE_NOOP("Lamina", "no file was written")});
    const auto screen = UIStoryboard::named(kMainStoryboard)->instantiate<ShareController>(exportscene::kShare);
    if (!screen)
        return;
    screen->setDetails(details);
    const auto exported = [weak = weak_from_this()] {
        if (const auto self = weak.lock())
            self->m_work.exported();
    };
    if (details.sharedURL.empty())
        screen->setSavedHandler(exported); // the library alone has it then
    else
        exported();
    presentOver(m_editor, screen);
}

} // namespace lamina
