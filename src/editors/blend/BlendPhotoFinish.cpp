// The ways out of the blend editor: discarding, and the picture as a file.

#include "editors/blend/BlendPhotoViewController.h"

#include "platform/base/DispatchQueue.h"
#include "platform/base/Localization.h"
#include "platform/base/NotificationCenter.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/photos/PhotoFolder.h"
#include "platform/view/UIAlertController.h"

#include <QDir>

namespace lamina {

namespace {

/// Never destroyed: a picture may still be on its way to the disk when the process ends.
DispatchQueue& savingQueue()
{
    static DispatchQueue* const queue = new DispatchQueue("lamina.blend.saving");
    return *queue;
}

/// With the home folder as "~", as people know it.
QString shownPath(const std::string& path)
{
    const QString text = QString::fromStdString(path);
    const QString home = QDir::homePath();
    return text.startsWith(home + '/') ? '~' + text.mid(home.size()) : text;
}

} // namespace

void BlendPhotoViewController::backBtn()
{
    const auto discard = [weak = weak_from_this()] {
        const std::shared_ptr<UIViewController> self = weak.lock();
        if (!self)
            return;
        NotificationCenter::defaultCenter().post("PinchZoomViewController", self.get());
        clearPickedImages();
    };
    present(UIAlertController::make(localizedString("⚠️"), localizedString("Discard Editing"),
                                    {{localizedString("YES"), UIAlertActionStyle::Default, discard},
                                     {localizedString("NO"), UIAlertActionStyle::Default, {}}}),
            true);
}

UIImage BlendPhotoViewController::flattened()
{
    m_composition.backdrop = UIColor::white();
    m_mainImgView->setBackgroundColor(m_composition.backdrop);
    // Into the last step alone: a gesture may be under way, which is not for this to record.
    BlendComposition kept = m_history.current();
    kept.backdrop = m_composition.backdrop;
    m_history.amend(kept);
    tell();

    std::optional<CGContext> context = CGContext::image(m_mainImgView->bounds().size, m_mainImgView->isOpaque(), 0);
    if (!context)
        return {};
    m_mainImgView->layer().renderInContext(*context);
    return context->makeUIImage();
}

void BlendPhotoViewController::shareBtn()
{
    if (m_saving)
        return;
    setNotice({});
    const UIImage picture = flattened();
    if (!picture)
        return showSaveFailure({localizedString("The picture"), localizedString("there is not enough memory")});
    setSaving(true);

    const auto weak = std::weak_ptr<UIViewController>(weak_from_this());
    // The process waits for the file, and the screen doesn't have to.
    savingQueue().async([this, weak, image = picture.cgImage(), work = DispatchQueue::main().expectWork()] {
        const Result<std::string> path = savePNGToPhotoLibrary(image);
        DispatchQueue::main().async([this, weak, path, work] {
            if (const auto self = weak.lock())
                saved(path);
        });
    });
}

void BlendPhotoViewController::saved(const Result<std::string>& path)
{
    if (path)
        setNotice(QString::fromStdString(localizedString("Saved to %1")).arg(shownPath(*path)));
    setSaving(false);
    if (!path)
        showSaveFailure(path.error());
}

void BlendPhotoViewController::showSaveFailure(const Error& error)
{
    const QString message =
        QStringLiteral("%1: %2.").arg(shownPath(error.subject), QString::fromStdString(error.cause));
    // A question may be open by now; this one goes over it.
    std::shared_ptr<UIViewController> top = shared_from_this();
    while (const std::shared_ptr<UIViewController> next = top->presentedViewController())
        top = next;
    top->present(UIAlertController::make(localizedString("Can’t save the picture"), message.toStdString(),
                                         {{localizedString("OK"), UIAlertActionStyle::Default, {}}}),
                 true);
}

void BlendPhotoViewController::dismissNotice()
{
    setNotice({});
}

void BlendPhotoViewController::setSaving(bool saving)
{
    m_saving = saving;
    emit savingChanged();
}

void BlendPhotoViewController::setNotice(const QString& notice)
{
    if (notice == m_notice)
        return;
    m_notice = notice;
    emit noticeChanged();
}

} // namespace lamina
