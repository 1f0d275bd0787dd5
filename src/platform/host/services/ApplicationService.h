#pragma once

#include "platform/application/ApplicationRequest.h"
#include "platform/base/Result.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <functional>
#include <string>
#include <vector>

namespace lamina {

/// The application as other programs of the session call it: the interface org.freedesktop.Application,
/// https://specifications.freedesktop.org/desktop-entry-spec/latest/dbus.html. What they say is looked at here: only
/// files of this device, in bounded number and length, and only actions that there are. Of other files the user is told
/// (`ApplicationRequest::leftOut`); anything else gets an error.
/// Main thread.
class ApplicationService : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit ApplicationService(QObject* parent = nullptr);

    /// Puts it on the bus. From any thread.
    void exportOn(QDBusConnection& bus);

    /// Takes a request; the error is the caller's answer.
    using Handler = std::function<Outcome(const ApplicationRequest& request)>;
    /// Requests that came before are handed over at once. Empty: those that come wait for the next handler.
    void setHandler(Handler handler);

public slots:
    /// To the front.
    Q_SCRIPTABLE void Activate(const QVariantMap& platformData);
    /// The photos are to be opened: "file:" URLs, or absolute paths.
    Q_SCRIPTABLE void Open(const QStringList& uris, const QVariantMap& platformData);
    /// An action of the desktop file. Its parameter, which may be missing, is a list as `Open` takes it.
    Q_SCRIPTABLE void ActivateAction(const QString& name, const QVariantList& parameter,
                                     const QVariantMap& platformData);

private:
    void take(ApplicationRequest request, const QVariantMap& platformData);
    void refuse(const Error& error);

    Handler m_handler;
    std::vector<ApplicationRequest> m_waiting;
};

/// Hands the request to the process that has the application's name on this bus. An error when it has refused it, or
/// has not answered in `seconds`: then it does not heed it later either. Waits for the answer.
Outcome handOver(const QDBusConnection& bus, const ApplicationRequest& request, double seconds = 3);

} // namespace lamina
