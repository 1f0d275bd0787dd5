// An editor's work is kept while it is done.

#include "editors/common/EditorViewController.h"

#include "platform/application/UIApplication.h"
#include "platform/base/Localization.h"
#include "platform/view/ImageRendering.h"
#include "platform/view/UIView.h"

#include <algorithm>
#include <utility>

namespace lamina {

namespace {

/// Pixels: for a card's print on a display of three pixels a point.
constexpr double kPrintSide = 288;

} // namespace

void EditorViewController::keepWork(const KeptKind& kind, std::function<KeptWork::Write()> record)
{
    m_keeper.start(
        {kind, std::move(record), [this] { return workPrint(); }, [this](const Error& error) { tellNotKept(error); }});
    m_leaving =
        NotificationCenter::defaultCenter().addObserver(UIApplicationWillTerminateNotification, [this](const auto&) {
            cancelGestures(); // what a finger has done so far counts
            m_keeper.flush();
        });
}

void EditorViewController::viewWillDisappear(bool animated)
{
    UIViewController::viewWillDisappear(animated);
    endSliding(); // what a finger has done so far counts
    landWork();
    m_keeper.flush();
}

UIImage EditorViewController::workPrint() const
{
    const CGSize size = exportedView().bounds().size;
    const auto showHandles = hideHandles();
    const UIImage print = imageByRenderingView(exportedView(), kPrintSide / std::max({size.width, size.height, 1.0}));
    showHandles();
    return print;
}

void EditorViewController::tellNotKept(const Error& error)
{
    setNotice(
        QString::fromStdString(localizedText("Your work can’t be kept safe: %1", {localizedString(error.cause)})));
}

void EditorViewController::dismissNotice()
{
    setNotice({});
}

void EditorViewController::setNotice(const QString& notice)
{
    if (notice == m_notice)
        return;
    m_notice = notice;
    emit noticeChanged();
}

} // namespace lamina
