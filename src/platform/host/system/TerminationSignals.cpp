#include "platform/host/system/TerminationSignals.h"

#include "platform/base/Log.h"

#include <QCoreApplication>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace lamina {

namespace {

constexpr int kSignals[] = {SIGTERM, SIGHUP, SIGINT};

volatile std::sig_atomic_t g_toLoop = -1;

/// A handler may do next to nothing; the rest is the event loop's.
void handleSignal(int)
{
    const int error = errno;
    const char byte = 0;
    [[maybe_unused]] const auto written = ::write(g_toLoop, &byte, 1);
    errno = error;
}

} // namespace

TerminationSignals::Pipe::Pipe()
{
    if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) {
        logWarning("signals to leave can't be handled");
        ends[0] = ends[1] = -1;
    }
}

TerminationSignals::TerminationSignals()
    : m_notifier(m_pipe.ends[0], QSocketNotifier::Read)
{
    if (m_pipe.ends[0] < 0)
        return;
    g_toLoop = m_pipe.ends[1];
    QObject::connect(&m_notifier, &QSocketNotifier::activated, qApp, [this] {
        char byte = 0;
        if (::read(m_pipe.ends[0], &byte, 1) == 1)
            QCoreApplication::quit();
    });
    struct sigaction action {};
    action.sa_handler = handleSignal;
    action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
    for (const int signal : kSignals) {
        struct sigaction before {};
        if (::sigaction(signal, nullptr, &before) == 0 && before.sa_handler != SIG_IGN)
            ::sigaction(signal, &action, nullptr);
    }
}

TerminationSignals::~TerminationSignals()
{
    if (m_pipe.ends[0] < 0)
        return;
    for (const int signal : kSignals) {
        struct sigaction now {};
        if (::sigaction(signal, nullptr, &now) == 0 && now.sa_handler != SIG_IGN)
            std::signal(signal, SIG_DFL);
    }
    ::close(m_pipe.ends[0]);
    ::close(m_pipe.ends[1]);
}

} // namespace lamina
