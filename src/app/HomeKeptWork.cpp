// The home screen offers the work that was left.

#include "app/MainStoryboard.h"
#include "app/ViewController.h"
#include "editors/blend/BlendComposition.h"
#include "editors/collage/CollageComposition.h"
#include "editors/common/EditorViewController.h"
#include "platform/base/Localization.h"
#include "platform/base/Log.h"
#include "platform/base/Result.h"
#include "platform/photos/PictureQueue.h"
#include "platform/view/FailureAlert.h"
#include "platform/view/UIAlertController.h"
#include "platform/view/UIImageMetaType.h"
#include "platform/view/UINavigationController.h"
#include "platform/view/UIStoryboard.h"

#include <QDateTime>
#include <QLocale>

#include <algorithm>
#include <utility>

namespace lamina {

namespace {

/// The editors whose work is offered.
struct KeptEditor {
    KeptKind kind;
    const char* scene;
    const char* title;
    bool isPushed; ///< else presented, as it is when it is begun
};

const std::vector<KeptEditor>& keptEditors()
{
    static const std::vector<KeptEditor> editors{
        {keptKind(BlendComposition()), scene::kBlend, QT_TRANSLATE_NOOP("Lamina", "Blend"), false},
        {keptKind(CollageComposition()), scene::kCollage, QT_TRANSLATE_NOOP("Lamina", "Collage"), true},
    };
    return editors;
}

const KeptEditor& editorOf(const KeptOffer& offer)
{
    const auto& editors = keptEditors();
    return *std::find_if(editors.begin(), editors.end(),
                         [&](const KeptEditor& editor) { return editor.kind.name == offer.kind; });
}

std::vector<KeptKind> keptKinds()
{
    std::vector<KeptKind> kinds;
    for (const KeptEditor& editor : keptEditors())
        kinds.push_back(editor.kind);
    return kinds;
}

std::string timeInWords(const QDateTime& time)
{
    const qint64 days = time.date().daysTo(QDate::currentDate());
    const QLocale locale;
    // Without a language of its own the system would count seconds.
    const QString form =
        locale.language() == QLocale::C ? QStringLiteral("HH:mm") : locale.timeFormat(QLocale::ShortFormat);
    const std::string clock = locale.toString(time.time(), form).toStdString();
    if (days == 0)
        return localizedText("today at %1", {clock});
    if (days == 1)
        return localizedText("yesterday at %1", {clock});
    return locale.toString(time.date(), QLocale::ShortFormat).toStdString();
}

} // namespace

void ViewController::viewWillAppear(bool animated)
{
    UIViewController::viewWillAppear(animated);
    findOfferedWork();
}

void ViewController::findOfferedWork()
{
    if (m_opensWork)
        return;
    std::optional<KeptOffer> offer = offeredWork(keptKinds());
    const bool same = offer.has_value() == m_offer.has_value() &&
                      (!offer || (offer->folder == m_offer->folder && offer->when == m_offer->when));
    m_offer = std::move(offer);
    emit offeredWorkChanged(); // of the same one the words change with the day
    if (!same)
        readPrint();
}

void ViewController::readPrint()
{
    m_print = {};
    emit workPrintChanged();
    if (!m_offer)
        return;
    runShortPictureWork([offer = *m_offer, self = sharedSelf()]() mutable {
        DispatchQueue::main().async([print = printOfKeptWork(offer), offer, self = std::move(self)] {
            if (!self->m_offer || self->m_offer->folder != offer.folder || self->m_offer->when != offer.when)
                return;
            self->m_print = print;
            emit self->workPrintChanged();
        });
    });
}

QString ViewController::workLine() const
{
    if (!m_offer)
        return {};
    const auto time = QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(m_offer->when * 1000));
    return QString::fromStdString(localizedString(editorOf(*m_offer).title) + ", " + timeInWords(time));
}

void ViewController::continueWork()
{
    if (!m_offer || std::exchange(m_opensWork, true))
        return;
    keptWorksQueue().async([self = sharedSelf(), offer = *m_offer, kind = editorOf(*m_offer).kind,
                            expected = DispatchQueue::main().expectWork()]() mutable {
        DispatchQueue::main().async(
            [self = std::move(self), expected, work = KeptWork::open(offer, kind)] { self->openWork(work); });
    });
}

void ViewController::openWork(const Result<std::shared_ptr<KeptWork>>& work)
{
    const KeptOffer offer = *std::exchange(m_offer, std::nullopt);
    m_opensWork = false;
    if (!isAppearing() || presentedViewController() || !navigationController())
        return findOfferedWork(); // this screen was left meanwhile
    const auto editor = UIStoryboard::named(kMainStoryboard)->instantiate<EditorViewController>(editorOf(offer).scene);
    if (work && editor && editor->resumeWork(*work)) {
        emit offeredWorkChanged();
        return openEditor(editor, editorOf(offer).isPushed);
    }
    const Error error = work ? workIsDamaged() : work.error();
    logWarning(offer.folder + ": " + error.cause);
    presentFailure(*this, localizedString("Can’t open the work"), {{}, error.cause});
    findOfferedWork();
}

void ViewController::openEditor(const std::shared_ptr<UIViewController>& editor, bool isPushed)
{
    if (!isPushed)
        return present(editor, true);
    m_editorWasLeft = true; // whoever comes back to this screen has left it
    navigationController()->pushViewController(editor, true);
}

void ViewController::discardWork()
{
    if (!m_offer || m_opensWork)
        return;
    const auto remove = [self = sharedSelf()] { self->removeWork(); };
    present(UIAlertController::make(localizedString("⚠️"), localizedString("Discard this work?"),
                                    {{localizedString("Discard"), UIAlertActionStyle::Destructive, remove},
                                     {localizedString("Keep"), UIAlertActionStyle::Cancel, {}}}),
            true);
}

void ViewController::removeWork()
{
    if (!m_offer)
        return;
    if (const Outcome removed = removeKeptWork(*m_offer); !removed)
        presentFailure(*this, localizedString("Can’t discard the work"), {{}, removed.error().cause});
    findOfferedWork();
}

} // namespace lamina
