#include "platform/host/system/MemoryMonitor.h"

#include "EventPump.h"

#include <QDBusMessage>

#include <array>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

namespace lamina::test {
namespace {

const BusConnector kNoBus = [] { return QDBusConnection(QStringLiteral("none")); };

TEST(MemoryWarnings, ComeFromThePortalAndFromTheSystemsService)
{
    const auto noPressure = [] { return -1; };
    const struct {
        MemoryWarningSources sources;
        const char* service;
        const char* path;
        const char* interface;
    } table[] = {
        {{sessionBus, kNoBus, noPressure},
         "org.freedesktop.portal.Desktop",
         "/org/freedesktop/portal/desktop",
         "org.freedesktop.portal.MemoryMonitor"},
        {{kNoBus, sessionBus, noPressure},
         "org.freedesktop.LowMemoryMonitor",
         "/org/freedesktop/LowMemoryMonitor",
         "org.freedesktop.LowMemoryMonitor"},
    };
    for (const auto& c : table) {
        SCOPED_TRACE(c.service);
        QDBusConnection desktop = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "desktop");
        ASSERT_TRUE(desktop.registerService(c.service));
        const MemoryMonitor monitor(c.sources);
        int warnings = 0;
        QObject::connect(&monitor, &MemoryMonitor::lowMemory, [&] { ++warnings; });
        ASSERT_TRUE(DispatchQueue::main().runUntilIdle(20)); // listening by then
        for (const uchar level : {50, 255}) {
            QDBusMessage warning = QDBusMessage::createSignal(c.path, c.interface, "LowMemoryWarning");
            warning << QVariant::fromValue(level);
            desktop.send(warning);
        }
        EXPECT_TRUE(runUntil([&] { return warnings == 2; }));
        QDBusConnection::disconnectFromBus("desktop");
    }
}

// Out-of-band bytes make a socket ready in the way in which the kernel's pressure file becomes ready.
TEST(MemoryWarnings, ComeFromTheKernelUntilItTakesItsTriggerAway)
{
    std::array<int, 2> sockets{};
    ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, sockets.data()), 0);
    const auto [kernel, pressure] = sockets;
    const MemoryMonitor monitor({kNoBus, kNoBus, [pressure = pressure] { return pressure; }});
    int warnings = 0;
    QObject::connect(&monitor, &MemoryMonitor::lowMemory, [&, pressure = pressure] {
        ++warnings;
        char byte = 0;
        ::recv(pressure, &byte, 1, MSG_OOB); // the kernel's file is not ready any more once it has told
    });
    runFor(20);
    EXPECT_EQ(warnings, 0);
    ASSERT_EQ(::send(kernel, "!", 1, MSG_OOB), 1);
    EXPECT_TRUE(runUntil([&] { return warnings == 1; }));
    ::close(kernel);
    runFor(20);
    EXPECT_EQ(warnings, 1) << "what fails for ever must not wake for ever";
}

TEST(MemoryWarnings, TheKernelTakesTheTriggerWhereThisUserMaySetOne)
{
    const int pressure = openMemoryPressure();
    EXPECT_EQ(pressure >= 0, ::access("/proc/pressure/memory", W_OK) == 0);
    ::close(pressure);
}

} // namespace
} // namespace lamina::test
