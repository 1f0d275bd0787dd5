#pragma once

#include "platform/base/Result.h"
#include "platform/host/system/Portal.h"

#include <QDBusMessage>
#include <QObject>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

#include <functional>
#include <memory>
#include <optional>
#include <string>

class QDBusPendingCallWatcher;
class QDBusServiceWatcher;

namespace lamina {

/// A question to one of the desktop's portals.
struct PortalCall {
    QString portal;         ///< the last word of its interface: "FileChooser"
    QString method;         ///< "OpenFile"
    QVariantList arguments; ///< all but the options, which come last
    QVariantMap options;    ///< without the token of the request, which is added
};

/// How a question to a portal ended.
struct PortalAnswer {
    /// The ways in which it can end.
    enum class Kind {
        Taken,       ///< the user has answered; `results` holds what the portal tells
        Cancelled,   ///< by the user
        Unavailable, ///< the portal doesn't answer, or went away; `error` says why. Another way may do
        Failed,      ///< the question could not be made; `error` says why
    };
    Kind kind = Kind::Cancelled;
    QVariantMap results;
    Error error;
};

/// Asks a portal of the session bus what the user answers in a dialog of the desktop's. Nothing here waits: the user
/// may think for an hour. One question at a time. Main thread.
class PortalRequest : public QObject {
    Q_OBJECT

public:
    /// Makes the question, on a background thread: it may look at files.
    using Prepare = std::function<Result<PortalCall>()>;
    using Completion = std::function<void(const PortalAnswer& answer)>;

    explicit PortalRequest(BusConnector connector = sessionBus, QObject* parent = nullptr);
    /// Cancels.
    ~PortalRequest() override;

    /// Asks. The completion runs once, on a later turn of the main queue, unless the question is taken back before; it
    /// may destroy this object. A question that is still open is cancelled first.
    void ask(Prepare prepare, Completion completion);

    /// Takes the question back: the dialog closes, the completion is not called any more. The second time nothing
    /// happens.
    void cancel();

    /// How long the portal may take to say that it is about to ask, in milliseconds; then it counts as unavailable. It
    /// does not limit the user. Default: ten seconds, in which a slow phone starts it.
    void setPatience(int milliseconds) { m_patience = milliseconds; }

private slots:
    void responded(const QDBusMessage& response);
    void busLost();

private:
    void send(const QDBusConnection& bus, PortalCall call);
    void listenTo(const QString& requestPath);
    void watchForLoss();
    void requestMade(QDBusPendingCallWatcher& call);
    void letGo();
    void finish(PortalAnswer answer);
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
