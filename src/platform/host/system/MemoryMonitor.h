#pragma once

#include "platform/host/system/Portal.h"

#include <QObject>

#include <functional>
#include <memory>

class QSocketNotifier;

namespace lamina {

/// The kernel's pressure file with a trigger written into it: ready with exceptional conditions (POLLPRI) when tasks
/// waited for memory for a tenth of two seconds (https://docs.kernel.org/accounting/psi.html). Negative where there is
/// no such file or this user may set no trigger. The caller closes it.
int openMemoryPressure();

/// Whence a `MemoryMonitor` hears.
struct MemoryWarningSources {
    BusConnector portalBus = sessionBus;
    BusConnector serviceBus = QDBusConnection::systemBus;
    /// Gives a descriptor, owned by the monitor from then on, that becomes ready with exceptional conditions when
    /// memory is short; negative: there is none.
    std::function<int()> pressure = openMemoryPressure;
};

/// Follows what the system says of its memory: the memory portal, the low-memory service of the system bus that stands
/// behind it outside a sandbox, and the kernel's pressure file. Each is listened to where it is there; nothing is asked
/// again and again. Main thread.
class MemoryMonitor : public QObject {
    Q_OBJECT

public:
    explicit MemoryMonitor(MemoryWarningSources sources = {}, QObject* parent = nullptr);
    /// Waits for a connection that is just being made: Qt's own end must not overtake it.
    ~MemoryMonitor() override;

signals:
    /// Memory is short: what is kept for speed alone should go. May come several times for one shortage.
    void lowMemory();

private slots:
    void warned(uchar level);

private:
    void watchPressure(int descriptor);
    void pressed();

    bool m_connecting = true;
    std::unique_ptr<QSocketNotifier> m_pressure;
};

} // namespace lamina
