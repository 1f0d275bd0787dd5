#include "platform/host/system/DocumentPresenter.h"

#include "platform/base/Localization.h"
#include "platform/host/system/BackgroundWork.h"
#include "platform/host/system/FolderModel.h"
#include "platform/host/system/WindowIdentifier.h"

#include <QCoreApplication>
#include <QWindow>

#include <filesystem>
#include <utility>

namespace lamina {

namespace {

bool exists(const std::string& path)
{
    std::error_code failure;
    return std::filesystem::exists(std::filesystem::symlink_status(path, failure));
}

/// "a.png", or "a 2.png" and so on where that is taken.
std::string freePath(const std::string& folder, const std::string& name)
{
    constexpr int kMostNames = 10'000;
    const std::filesystem::path file(name);
    std::string path = folder + '/' + name;
    for (int number = 2; exists(path) && number <= kMostNames; ++number)
        path = folder + '/' + file.stem().string() + ' ' + std::to_string(number) + file.extension().string();
    return path;
}

} // namespace

DocumentPresenter::DocumentPresenter(QWindow& parent, FolderModel& folder, BusConnector connector)
    : m_parent(parent)
    , m_folder(folder)
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
    const auto answered = [this](const FileChooserAnswer& answer) { take(answer); };
    if (m_picker->asksForMovie())
        m_portal.open({.parentWindow = portalWindowIdentifier(&m_parent),
                       .title = localizedString(QT_TRANSLATE_NOOP("Lamina", "Choose a movie")),
                       .acceptLabel = localizedString("Choose"),
                       .folder = m_picker->folder(),
                       .choosesMovie = true},
                      answered);
    else if (m_picker->asksForFolder())
        m_portal.open({.parentWindow = portalWindowIdentifier(&m_parent),
                       .title = localizedString(QT_TRANSLATE_NOOP("Lamina", "Choose a folder")),
                       .acceptLabel = localizedString("Choose"),
                       .folder = m_picker->folder(),
                       .choosesFolder = true},
                      answered);
    else
        m_portal.save({.parentWindow = portalWindowIdentifier(&m_parent),
                       .title = localizedString("Save as"),
                       .acceptLabel = localizedString("Save"),
                       .folder = m_picker->folder(),
                       .name = m_picker->suggestedName()},
                      answered);
}

void DocumentPresenter::take(const FileChooserAnswer& answer)
{
    if (!m_picker)
        return;
    const auto chosen = [this](const std::string& path) {
        if (m_picker->asksForFolder() || m_picker->asksForMovie())
            return m_picker->choose({path});
        // What is there by now is what the dialog has asked about.
        inBackground<bool>(
            folderQueue(), m_picker, [path] { return exists(path); },
            [picker = m_picker.data(), path](bool taken) {
                picker->choose({path, taken});
            });
    };
    tellPicker(*m_picker, answer, chosen, [this] { askInWindow(); });
}

void DocumentPresenter::askInWindow()
{
    m_folder.setKind(m_picker->asksForMovie() ? FolderFiles::Movies : FolderFiles::Pictures);
    m_folder.openAt(m_picker->folder());
    setAsksInWindow(true);
}

void DocumentPresenter::placeIn(const std::string& folder)
{
    UIDocumentPickerViewController* const picker = folderPicker();
    if (!picker)
        return;
    if (picker->asksForFolder() || picker->asksForMovie())
        return picker->choose({folder});
    inBackground<std::string>(
        folderQueue(), picker, [folder, name = picker->suggestedName()] { return freePath(folder, name); },
        [picker](std::string path) { picker->choose({std::move(path)}); });
}

void DocumentPresenter::setAsksInWindow(bool inWindow)
{
    if (std::exchange(m_asksInWindow, inWindow) != inWindow)
        emit folderPickerChanged();
}

void DocumentPresenter::forget()
{
    setAsksInWindow(false);
    m_portal.cancel();
    if (m_picker)
        m_picker->disconnect(this);
    m_picker.clear();
}

} // namespace lamina
