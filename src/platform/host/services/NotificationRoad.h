#pragma once

#include "platform/application/ApplicationRequest.h"
#include <QDBusMessage>
#include <QObject>
#include <QString>

namespace lamina {

/// What a desktop shows: plain text of bounded length.
struct ShownNotification {
    QString identifier; ///< one of the same takes the place of the one that is shown
    QString title;
    QString body; ///< may have several lines
    bool hasSound = false;
};

/// A way to show notifications on a desktop. Nothing here waits: what nobody shows is told as closed. Main thread.
class NotificationRoad : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// On a later turn, where it takes time.
    virtual void show(const ShownNotification& notification) = 0;
    /// Takes it off the screen; it is not told as closed.
    virtual void withdraw(const QString& identifier) = 0;

    /// Whether what is shown needs this process: it goes with it, or tells nobody else that it is opened.
    virtual bool needsProcess() const = 0;

signals:
    /// The user has opened it. The token lets a window come to the front; empty where the desktop gives none.
    void opened(const QString& identifier, const QString& activationToken);
    /// It is shown no longer, or could not be shown.
    void closed(const QString& identifier);

protected:
    /// An error, or an answer that makes no sense, goes to the log, the first time alone: who shows nothing now will
    /// show nothing the next time.
    void complain(const QDBusMessage& reply);

private:
    bool m_hasComplained = false;
};

} // namespace lamina
