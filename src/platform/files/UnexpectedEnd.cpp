#include "platform/files/UnexpectedEnd.h"

#include "platform/base/Causes.h"
#include "platform/base/ExceptionCause.h"
#include "platform/base/ShownText.h"
#include "platform/base/StandardStreams.h"
#include "platform/files/FileWriting.h"

#include <csignal>
#include <exception>
#include <unistd.h>

namespace lamina {

namespace {

constexpr int kFailed = 1;

const char* s_program = "";

void say(const char* cause)
{
    for (const char* const part : {s_program, ": ", cause, "\n"})
        writeMessage(part);
}

// Runs inside a signal: only what is safe there.
[[noreturn]] void leave(const char* cause)
{
    removeUnfinishedFiles();
    say(cause);
    _exit(kFailed);
}

[[noreturn]] void uncaught() noexcept
{
    try {
        leave(shownText(causeOfException()).c_str());
    } catch (...) { // there is none left for these texts either
        leave(cause::kNoMemory);
    }
}

void aborted(int)
{
    leave("something inside gave up; memory may be short");
}

} // namespace

int withoutExceptions(const std::string& program, const std::function<int()>& work)
{
    try {
        return work();
    } catch (...) {
        writeMessage(program + ": " + shownText(causeOfException()) + "\n");
        return kFailed;
    }
}

void installLastNets(const char* program, bool catchesAborts)
{
    s_program = program;
    std::set_terminate(uncaught);
    if (!catchesAborts)
        return;
    struct sigaction action = {};
    action.sa_handler = aborted;
    sigfillset(&action.sa_mask);
    for (const int signal : {SIGABRT, SIGTRAP}) // GLib gives up by the second
        ::sigaction(signal, &action, nullptr);
}

} // namespace lamina
