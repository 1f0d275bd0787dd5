// The bus interfaces are those of https://flatpak.github.io/xdg-desktop-portal/docs/ (MemoryMonitor) and of
// low-memory-monitor, https://gitlab.freedesktop.org/hadess/low-memory-monitor.
#include "platform/host/system/MemoryMonitor.h"

#include "platform/host/system/BackgroundWork.h"

#include <QDBusMessage>
#include <QSocketNotifier>

#include <fcntl.h>
#include <poll.h>
#include <string_view>
#include <unistd.h>
#include <utility>

namespace lamina {

namespace {

const QString kService = QStringLiteral("org.freedesktop.LowMemoryMonitor");
const QString kServicePath = QStringLiteral("/org/freedesktop/LowMemoryMonitor");
const QString kPortalInterface = QStringLiteral("org.freedesktop.portal.MemoryMonitor");
const QString kWarning = QStringLiteral("LowMemoryWarning");

constexpr const char* kPressureFile = "/proc/pressure/memory";
/// Microseconds of waiting, and of the time over which it is summed; an ordinary user may ask for whole multiples of
/// two seconds only. The zero at the end belongs to it.
constexpr std::string_view kTrigger("some 200000 2000000\0", 20);

struct Buses {
    QDBusConnection portal;
    QDBusConnection service;
};

} // namespace

int openMemoryPressure()
{
    const int descriptor = ::open(kPressureFile, O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (descriptor >= 0 && ::write(descriptor, kTrigger.data(), kTrigger.size()) < 0) {
        ::close(descriptor);
        return -1;
    }
    return descriptor;
}

MemoryMonitor::MemoryMonitor(MemoryWarningSources sources, QObject* parent)
    : QObject(parent)
{
    watchPressure(sources.pressure());
    inBackground<Buses>(
        busQueue(), this,
        [sources = std::move(sources)] {
            return Buses{sources.portalBus(), sources.serviceBus()};
        },
        [this](Buses buses) {
            m_connecting = false;
            buses.portal.connect(kPortalService, kPortalPath, kPortalInterface, kWarning, this, SLOT(warned(uchar)));
            buses.service.connect(kService, kServicePath, kService, kWarning, this, SLOT(warned(uchar)));
        });
}

MemoryMonitor::~MemoryMonitor()
{
    if (m_connecting)
        awaitBusQueue();
    if (m_pressure)
        ::close(static_cast<int>(m_pressure->socket()));
}

void MemoryMonitor::warned(uchar)
{
    emit lowMemory(); // at every level: to give back what is kept for speed alone costs little
}

void MemoryMonitor::watchPressure(int descriptor)
{
    if (descriptor < 0)
        return;
    m_pressure = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Exception);
    QObject::connect(m_pressure.get(), &QSocketNotifier::activated, this, &MemoryMonitor::pressed);
}

void MemoryMonitor::pressed()
{
    // A trigger that the kernel has taken away is ready for ever.
    pollfd ready{static_cast<int>(m_pressure->socket()), POLLPRI, 0};
    if (::poll(&ready, 1, 0) > 0 && (ready.revents & (POLLERR | POLLNVAL | POLLHUP)) != 0)
        m_pressure->setEnabled(false);
    else
        emit lowMemory();
}

} // namespace lamina
