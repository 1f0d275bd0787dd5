#pragma once

#include "platform/base/Result.h"
#include "platform/host/system/FileChooserOptions.h"
#include "platform/host/system/Portal.h"

#include <QDBusMessage>
#include <QObject>

#include <functional>
#include <memory>
#include <optional>
#include <string>

class QDBusPendingCallWatcher;
class QDBusServiceWatcher;

namespace lamina {

/// How asking for a file ended.
struct FileChooserAnswer {
    /// The ways in which it can end.
    enum class Kind {
        Chosen,      ///< `path` is the file
        Cancelled,   ///< by the user
        Unavailable, ///< no chooser could be shown, or it went away; `error` says why. Another way of choosing may do
        Failed, ///< something was chosen that is no file of this device; `error` holds its name and the cause to show
    };
    Kind kind = Kind::Cancelled;
    std::string path;
    Error error;
};

/// The desktop's own file chooser, by the portal org.freedesktop.portal.FileChooser of the session bus. Nothing here
/// waits: the user may think for an hour. One question at a time. Main thread.
class FileChooserPortal : public QObject {
    Q_OBJECT

public:
    using Completion = std::function<void(const FileChooserAnswer& answer)>;

    explicit FileChooserPortal(BusConnector connector = sessionBus, QObject* parent = nullptr);
    /// Cancels.
    ~FileChooserPortal() override;

    /// Opens the chooser. The completion runs once, on a later turn of the main queue, unless the question is taken
    /// back before; it may destroy this object. A question that is still open is cancelled first.
    void open(FileChooserQuestion question, Completion completion);

    /// Takes the question back: the chooser closes, the completion is not called any more. The second time nothing
    /// happens.
    void cancel();

    /// How long the portal may take to say that it is about to ask, in milliseconds; then it counts as unavailable. It
    /// does not limit the user. Default: ten seconds, in which a slow phone starts it.
    void setPatience(int milliseconds) { m_patience = milliseconds; }

private slots:
    void responded(const QDBusMessage& response);
    void busLost();

private:
    void ask(const QDBusConnection& bus, const FileChooserQuestion& question);
    void listenTo(const QString& requestPath);
    void watchForLoss();
    void requestMade(QDBusPendingCallWatcher& call);
    void letGo();
    void finish(FileChooserAnswer answer);
    void giveUp(const std::string& cause);

    BusConnector m_connector;
    int m_patience = 10'000;
    Completion m_completion;              ///< empty while nothing is asked
    int m_question = 0;                   ///< tells the present question from those before
    std::optional<QDBusConnection> m_bus; ///< while an answer may come
    QStringList m_requestPaths;           ///< from which it may come
    std::unique_ptr<QDBusServiceWatcher> m_watcher;
};

} // namespace lamina
