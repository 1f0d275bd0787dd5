#pragma once

#include "platform/host/services/DesktopNotifications.h"
#include "platform/host/services/LauncherBadge.h"
#include "platform/host/services/UnifiedPush.h"
#include "platform/host/system/Portal.h"

#include <memory>

namespace lamina {

class AppDelegate;
class SessionName;

/// What the application is to the desktop, with a window or without one: its delegate, and the services by which the
/// number on its icon, notifications and messages go out and come in. It installs them, and is gone before the event
/// loop's end. One at a time, which may be made before Qt's application object. Main thread.
class ApplicationLife {
public:
    explicit ApplicationLife(const BusConnector& connector = sessionBus, NotificationWay way = notificationWay());
    /// Ends, and takes the services out.
    ~ApplicationLife();
    ApplicationLife(const ApplicationLife&) = delete;
    ApplicationLife& operator=(const ApplicationLife&) = delete;

    /// Adds what others call to the name on the bus, before that begins.
    void exportTo(SessionName& name);
    /// The application has started; nothing here waits for anything, and the bus is not touched. The second time
    /// nothing happens.
    void launch();
    /// There is time for what the launch has left for later: the first frame stands. The second time nothing happens.
    void begin();
    /// The same at once, where there is no window yet; `begin` follows when there is one.
    void beginWithoutWindow();
    /// Whether the desktop shows something that would go with this process: a number on the icon, or notifications.
    bool hasSomethingShown() const;
    /// Tells those who follow the application that it leaves, once.
    void end();

    AppDelegate& delegate() { return *m_delegate; }
    /// Its signal asks for the window.
    DesktopNotifications& notifications() { return m_notifications; }
    UnifiedPush& messages() { return m_push; }

private:
    std::shared_ptr<AppDelegate> m_delegate;
    LauncherBadge m_badge;
    DesktopNotifications m_notifications;
    UnifiedPush m_push;
    bool m_hasLaunched = false;
    bool m_hasEnded = false;
};

} // namespace lamina
