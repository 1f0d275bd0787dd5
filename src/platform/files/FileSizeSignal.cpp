#include "platform/files/FileSizeSignal.h"

#include <csignal>
#include <ctime>

namespace lamina {

FileSizeSignalBlocker::FileSizeSignalBlocker()
{
    sigemptyset(&m_signal);
    sigaddset(&m_signal, SIGXFSZ);
    pthread_sigmask(SIG_BLOCK, &m_signal, &m_before);
}

FileSizeSignalBlocker::~FileSizeSignalBlocker()
{
    if (sigismember(&m_before, SIGXFSZ) == 0) {
        const timespec now{};
        sigtimedwait(&m_signal, nullptr, &now); // takes a pending one away
    }
    pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
}

} // namespace lamina
