#pragma once

#include "platform/host/system/FileChooserPortal.h"
#include "platform/host/system/Portal.h"
#include "platform/view/UIDocumentPickerViewController.h"
#include "platform/view/UIViewController.h"

#include <QObject>
#include <QPointer>

class QWindow;

namespace lamina {

/// Asks for a presented `UIDocumentPickerViewController`, in the dialog of the system. Main thread.
class DocumentPresenter : public QObject {
    Q_OBJECT

public:
    /// `parent` is the window over which the dialog stands.
    explicit DocumentPresenter(QWindow& parent, BusConnector connector = sessionBus);

    /// Called as a screen is presented; others are left alone.
    void present(UIViewController* screen);

private:
    void take(const FileChooserAnswer& answer);
    void forget();

    QWindow& m_parent;
    FileChooserPortal m_portal;
    QPointer<UIDocumentPickerViewController> m_picker;
};

} // namespace lamina
