#include "cli/common/Interruption.h"

#include "cli/common/ExitCode.h"
#include "platform/files/FileWriting.h"

#include <csignal>
#include <unistd.h>

namespace lamina {

namespace {

// Runs inside a signal: only what is safe there.
void interrupted(int)
{
    removeUnfinishedFiles();
    _exit(static_cast<int>(ExitCode::Interrupted));
}

} // namespace

void installInterruptionHandlers()
{
    struct sigaction action = {};
    action.sa_handler = interrupted;
    sigfillset(&action.sa_mask);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction before = {};
        if (::sigaction(signal, nullptr, &before) == 0 && before.sa_handler != SIG_IGN)
            ::sigaction(signal, &action, nullptr);
    }
    std::signal(SIGPIPE, SIG_IGN);
}

} // namespace lamina
