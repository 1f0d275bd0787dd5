#pragma once

#include "platform/host/services/LazyBus.h"

#include "platform/host/system/Portal.h"

#include <QDBusVirtualObject>

#include <memory>

namespace lamina {

/// The number on the application's entry in docks and launchers, told by the signal
/// com.canonical.Unity.LauncherEntry.Update of the session bus, https://wiki.ubuntu.com/Unity/LauncherAPI, which they
/// listen to on most desktops. Who asks later is answered. Nothing is sent, and no bus is looked for, before there is a
/// number; without a bus nothing happens. The number goes with the process. Main thread.
class LauncherBadge : public QObject {
    Q_OBJECT

public:
    explicit LauncherBadge(BusConnector connector = sessionBus, QObject* parent = nullptr);
    ~LauncherBadge() override;

    /// From now on it is this number, at least 0; 0: none.
    void setNumber(int number);

private:
    class Entry;

    void tell(QDBusConnection& bus);

    int m_number = 0;
    int m_told = 0;                 ///< what those who listen know
    std::unique_ptr<Entry> m_entry; ///< who answers, once there was something to tell
    LazyBus m_bus;
};

} // namespace lamina
