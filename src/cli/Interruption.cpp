#include "cli/Interruption.h"

#include "cli/ExitCode.h"
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
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        std::signal(signal, interrupted);
    std::signal(SIGPIPE, SIG_IGN);
}

} // namespace lamina
