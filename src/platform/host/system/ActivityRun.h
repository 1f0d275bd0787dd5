#pragma once

#include "platform/base/Result.h"
#include "platform/host/system/Portal.h"
#include "platform/host/system/PortalRequest.h"
#include "platform/view/UIActivityViewController.h"
#include "platform/view/UIDocumentPickerViewController.h"

#include <QDBusUnixFileDescriptor>
#include <QObject>

#include <functional>
#include <memory>
#include <string>

namespace lamina {

/// Does what was chosen in a share sheet, and tells the sheet how it ended. Main thread.
class ActivityRun : public QObject {
    Q_OBJECT

public:
    /// With what it asks the desktop.
    struct Desktop {
        std::string parentWindow; ///< from `portalWindowIdentifier`
        BusConnector connector = sessionBus;
    };

    ActivityRun(std::shared_ptr<UIActivityViewController> sheet, UIActivityType type, Desktop desktop,
                QObject* parent = nullptr);

    /// Begins, or waits for the file first.
    void start();

signals:
    /// All is done, or given up, and the sheet has been told.
    void over();

private:
    using MakeCall = std::function<PortalCall(const QDBusUnixFileDescriptor& file)>;

    void begin();
    void openWith();
    void mail();
    void copy();
    void saveCopy();
    void copyTo(const UIDocumentPlace& place);
    void showInFolder();
    void print();
    void printPrepared(const QVariantMap& prepared);

    void askWithFile(MakeCall makeCall, std::function<bool()> otherWay);
    void answered(const PortalAnswer& answer, const std::function<bool()>& otherWay);
    void end(bool completed, const std::string& path = {});
    void fail(const Error& error);
    QString name() const;

    std::shared_ptr<UIActivityViewController> m_sheet;
    UIActivityType m_type;
    Desktop m_desktop;
    PortalRequest m_request;
    std::string m_path; ///< empty: there is only the picture
};

} // namespace lamina
