#include "platform/host/system/DocumentPresenter.h"

#include "platform/base/Localization.h"
#include "platform/host/system/BackgroundWork.h"
#include "platform/host/system/WindowIdentifier.h"

#include <QWindow>

#include <filesystem>
#include <utility>

namespace lamina {

DocumentPresenter::DocumentPresenter(QWindow& parent, BusConnector connector)
    : m_parent(parent)
    , m_portal(std::move(connector))
{
}

void DocumentPresenter::present(UIViewController* screen)
{
    if (screen->systemPresentation() != UISystemPresentation::DocumentPicker)
        return;
    forget();
    m_picker = static_cast<UIDocumentPickerViewController*>(screen);
    connect(m_picker, &UIDocumentPickerViewController::answered, this, &DocumentPresenter::forget);
    m_portal.save({.parentWindow = portalWindowIdentifier(&m_parent),
                   .title = localizedString("Save as"),
                   .acceptLabel = localizedString("Save"),
                   .folder = m_picker->folder(),
                   .name = m_picker->suggestedName()},
                  [this](const FileChooserAnswer& answer) { take(answer); });
}

void DocumentPresenter::take(const FileChooserAnswer& answer)
{
    if (!m_picker)
        return;
    switch (answer.kind) {
    case FileChooserAnswer::Kind::Chosen:
        // What is there by now is what the dialog has asked about.
        inBackground<bool>(
            folderQueue(), m_picker,
            [path = answer.path] {
                std::error_code failure;
                return std::filesystem::exists(std::filesystem::symlink_status(path, failure));
            },
            [picker = m_picker.data(), path = answer.path](bool exists) {
                picker->choose({path, exists});
            });
        break;
    case FileChooserAnswer::Kind::Cancelled:
        m_picker->cancel();
        break;
    case FileChooserAnswer::Kind::Failed:
    case FileChooserAnswer::Kind::Unavailable:
        m_picker->fail(answer.error);
        break;
    }
}

void DocumentPresenter::forget()
{
    m_portal.cancel();
    if (m_picker)
        m_picker->disconnect(this);
    m_picker.clear();
}

} // namespace lamina
