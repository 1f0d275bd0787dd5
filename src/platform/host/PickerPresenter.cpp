#include "platform/host/PickerPresenter.h"

#include "platform/base/Localization.h"
#include "platform/host/system/FileChooserOptions.h"
#include "platform/host/system/FileChooserPortal.h"
#include "platform/host/system/FolderModel.h"
#include "platform/host/system/WindowIdentifier.h"

#include <QWindow>

namespace lamina {

PickerPresenter::PickerPresenter(QWindow& parent, FolderModel& folder)
    : m_parent(parent)
    , m_folder(folder)
    , m_portal(std::make_unique<FileChooserPortal>())
{
}

PickerPresenter::~PickerPresenter() = default;

void PickerPresenter::present(UIViewController* screen)
{
    if (screen->systemPresentation() != UISystemPresentation::ImagePicker)
        return;
    auto& picker = static_cast<UIImagePickerController&>(*screen);
    forget();
    if (picker.hasPreselected() || picker.sourceType() != UIImagePickerControllerSourceType::PhotoLibrary)
        return;
    m_picker = &picker;
    connect(&picker, &UIImagePickerController::stateChanged, this, [this] {
        if (m_picker && m_picker->state() != UIImagePickerController::Choosing)
            forget();
    });
    openPortal();
}

void PickerPresenter::openPortal()
{
    FileChooserQuestion question;
    question.title = localizedString("Choose a photo");
    question.acceptLabel = localizedString("Choose");
    question.parentWindow = portalWindowIdentifier(&m_parent);
    question.folder = m_startFolder;
    m_portal->open(std::move(question), [this](const FileChooserAnswer& answer) { take(answer); });
}

void PickerPresenter::take(const FileChooserAnswer& answer)
{
    if (!m_picker)
        return;
    const auto chosen = [this](const std::string& path) { m_picker->choose(PhotoSource::fromFile(path)); };
    tellPicker(*m_picker, answer, chosen, [this] { chooseInWindow(); });
}

void PickerPresenter::chooseInWindow()
{
    m_folder.setKind(FolderFiles::Pictures);
    m_folder.openAt(m_startFolder);
    setChoosesInWindow(true);
}

void PickerPresenter::choose(const std::string& path)
{
    if (UIImagePickerController* const picker = folderPicker())
        picker->choose(PhotoSource::fromFile(path));
}

void PickerPresenter::forget()
{
    m_portal->cancel();
    if (m_picker)
        m_picker->disconnect(this);
    setChoosesInWindow(false);
    m_picker.clear();
}

void PickerPresenter::setChoosesInWindow(bool inWindow)
{
    if (m_choosesInWindow == inWindow)
        return;
    m_choosesInWindow = inWindow;
    emit folderPickerChanged();
}

} // namespace lamina
