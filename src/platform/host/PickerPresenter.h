#pragma once

#include "platform/view/UIImagePickerController.h"

#include "platform/view/UIViewController.h"

#include <QObject>
#include <QPointer>

#include <memory>
#include <string>
#include <utility>

class QWindow;

namespace lamina {

class FileChooserPortal;
class FolderModel;
struct FileChooserAnswer;

/// Lets a presented `UIImagePickerController` choose: in the chooser of the system, or in a folder list in the window
/// where none answers. Main thread.
class PickerPresenter : public QObject {
    Q_OBJECT

public:
    /// `parent` is the window over which the system's chooser stands; `folder` the list in the window.
    PickerPresenter(QWindow& parent, FolderModel& folder);
    ~PickerPresenter() override;

    /// Where choosing starts; empty: where the system likes.
    void setStartFolder(std::string folder) { m_startFolder = std::move(folder); }

    /// Called as a screen is presented. What is no picker is left alone, and so is a picker that has its photo already,
    /// or wants the camera.
    void present(UIViewController* screen);

    /// The picker that has to choose in the window; null: none.
    UIImagePickerController* folderPicker() const { return m_choosesInWindow ? m_picker.data() : nullptr; }
    /// What was chosen in the window.
    void choose(const std::string& path);

signals:
    /// Another picker has to choose in the window, or none any more.
    void folderPickerChanged();

private:
    void openPortal();
    void take(const FileChooserAnswer& answer);
    void chooseInWindow();
    void forget();
    void setChoosesInWindow(bool inWindow);

    QWindow& m_parent;
    FolderModel& m_folder;
    std::string m_startFolder;
    std::unique_ptr<FileChooserPortal> m_portal;
    QPointer<UIImagePickerController> m_picker;
    bool m_choosesInWindow = false;
};

} // namespace lamina
