// The ways out of an editor: discarding, and the picture as a file.

#include "editors/common/EditorViewController.h"

#include "platform/base/Causes.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/Localization.h"
#include "platform/photos/PhotoFolder.h"
#include "platform/photos/PictureQueue.h"
#include "platform/view/FailureAlert.h"
#include "platform/view/ImageRendering.h"
#include "platform/view/UIAlertController.h"
#include "platform/view/UIApplication.h"

#include <QDir>
#include <QFileInfo>
#include <QUrl>

#include <utility>

namespace lamina {

namespace {

/// With the home folder as "~", as people know it.
QString shownPath(const std::string& path)
{
    const QString text = QString::fromStdString(path);
    const QString home = QDir::homePath();
    return text.startsWith(home + '/') ? '~' + text.mid(home.size()) : text;
}

} // namespace

void EditorViewController::askToDiscard(std::function<void()> discard)
{
    const auto yes = [weak = weak_from_this(), discard = std::move(discard)] {
        if (const std::shared_ptr<UIViewController> self = weak.lock())
            discard();
    };
    present(UIAlertController::make(localizedString("⚠️"), localizedString("Discard Editing"),
                                    {{localizedString("YES"), UIAlertActionStyle::Default, yes},
                                     {localizedString("NO"), UIAlertActionStyle::Default, {}}}),
            true);
}

UIImage EditorViewController::flattened()
{
    prepareExport();
    return renderedCanvas();
}

UIImage EditorViewController::renderedCanvas() const
{
    return imageByRenderingView(exportedView());
}

void EditorViewController::savePicture()
{
    if (m_saving)
        return;
    setNotice({});
    const UIImage picture = flattened();
    if (!picture)
        return showSaveFailure({localizedString("The picture"), cause::kNoMemory});
    setSaving(true);

    const auto weak = std::weak_ptr<UIViewController>(weak_from_this());
    // The process waits for the file, and the screen doesn't have to.
    pictureQueue().async([this, weak, image = picture.cgImage(), revision = m_keeper.revision(),
                          work = DispatchQueue::main().expectWork()] {
        const Result<std::string> path = savePNGToPhotoLibrary(image);
        DispatchQueue::main().async([this, weak, path, revision, work] {
            if (const auto self = weak.lock())
                saved(path, revision);
        });
    });
}

void EditorViewController::saved(const Result<std::string>& path, int revision)
{
    if (path) {
        m_keeper.release(revision);
        setNotice(QString::fromStdString(localizedString("Saved to %1")).arg(shownPath(*path)), *path);
    }
    setSaving(false);
    if (!path)
        showSaveFailure(path.error());
}

void EditorViewController::showSaveFailure(const Error& error)
{
    presentFailure(*this, localizedString("Can’t save the picture"),
                   {shownPath(error.subject).toStdString(), error.cause});
}

QString EditorViewController::noticeAction() const
{
    return m_savedPath.empty() ? QString() : QString::fromStdString(localizedString("Show"));
}

void EditorViewController::actOnNotice()
{
    const QString folder = QFileInfo(QString::fromStdString(m_savedPath)).path();
    const Error failure{shownPath(folder.toStdString()).toStdString(),
                        QT_TRANSLATE_NOOP("Lamina", "no program opens folders")};
    if (!m_savedPath.empty() && !UIApplication::shared().openURL(QUrl::fromLocalFile(folder).toEncoded().toStdString()))
        presentFailure(*this, localizedString("Can’t show the picture"), failure);
    dismissNotice();
}

void EditorViewController::dismissNotice()
{
    setNotice({});
}

void EditorViewController::setSaving(bool saving)
{
    m_saving = saving;
    emit savingChanged();
}

void EditorViewController::setNotice(const QString& notice, const std::string& savedPath)
{
    if (notice == m_notice)
        return;
    m_notice = notice;
    m_savedPath = savedPath;
    emit noticeChanged();
}

} // namespace lamina
