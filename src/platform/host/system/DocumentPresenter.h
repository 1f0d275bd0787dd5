#pragma once

#include "platform/host/system/FileChooserPortal.h"
#include "platform/host/system/Portal.h"
#include "platform/view/UIDocumentPickerViewController.h"
#include "platform/view/UIViewController.h"

#include <QObject>
#include <QPointer>

#include <string>

class QWindow;

namespace lamina {

class FolderModel;

/// Asks for a presented `UIDocumentPickerViewController`: in the dialog of the system, or in a folder list in the
/// window where none answers. Main thread.
class DocumentPresenter : public QObject {
    Q_OBJECT

public:
    /// `parent` is the window over which the dialog stands; `folder` the list in the window.
    DocumentPresenter(QWindow& parent, FolderModel& folder, BusConnector connector = sessionBus);

    /// Called as a screen is presented; others are left alone.
    void present(UIViewController* screen);

    /// The picker that has to ask in the window; null: none.
    UIDocumentPickerViewController* folderPicker() const { return m_asksInWindow ? m_picker.data() : nullptr; }
    /// What was chosen in the window: the folder or the movie that was asked for; or the file goes into that folder,
    /// under a name that is free there.
    void placeIn(const std::string& folder);

signals:
    /// Another picker has to ask in the window, or none any more.
    void folderPickerChanged();

private:
    void take(const FileChooserAnswer& answer);
    void askInWindow();
    void setAsksInWindow(bool inWindow);
    void forget();

    QWindow& m_parent;
    FolderModel& m_folder;
    FileChooserPortal m_portal;
    QPointer<UIDocumentPickerViewController> m_picker;
    bool m_asksInWindow = false;
};

} // namespace lamina
