#include "cli/common/Interruption.h"

#include "cli/common/ExitCode.h"
#include "platform/files/FileWriting.h"

#include <atomic>
#include <csignal>
#include <unistd.h>

namespace lamina {

namespace {

constexpr int kUnwatched = -1;
constexpr int kMostCounted = 2;

/// How many were counted, where they are.
std::atomic<int> s_counted{kUnwatched};
static_assert(std::atomic<int>::is_always_lock_free); // or the handler could wait for what it interrupted

// Runs inside a signal: only what is safe there.
void interrupted(int)
{
    const int counted = s_counted.load();
    if (counted >= 0 && counted < kMostCounted) {
        s_counted.store(counted + 1);
        return;
    }
    removeUnfinishedFiles();
    _exit(static_cast<int>(ExitCode::Interrupted));
}

} // namespace

void installInterruptionHandlers()
{
    struct sigaction action = {};
    action.sa_handler = interrupted;
    action.sa_flags = SA_RESTART; // what is only counted disturbs nobody
    sigfillset(&action.sa_mask);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction before = {};
        if (::sigaction(signal, nullptr, &before) == 0 && before.sa_handler != SIG_IGN)
            ::sigaction(signal, &action, nullptr);
    }
    std::signal(SIGPIPE, SIG_IGN);
}

Interruptions::Interruptions()
{
    s_counted = 0;
}

Interruptions::~Interruptions()
{
    s_counted = kUnwatched;
}

int Interruptions::count() const
{
    return s_counted;
}

} // namespace lamina
