#include "platform/base/StandardStreams.h"

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <unistd.h>

namespace lamina {

namespace {

std::atomic<int> s_messages{STDERR_FILENO};

} // namespace

void openStandardStreams()
{
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(descriptor, F_GETFD) >= 0 || errno != EBADF)
            continue;
        // The lowest that is free, which is this one. Opened the wrong way round.
        ::open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY); // NOLINT: kept open on purpose
    }
}

void keepStandardErrorToOurselves()
{
    constexpr int kFirst = STDERR_FILENO + 1;
    const int kept = ::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, kFirst);
    if (kept < 0)
        return;
    const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (nowhere < 0 || ::dup2(nowhere, STDERR_FILENO) < 0)
        ::close(kept);
    else
        s_messages = kept;
    if (nowhere >= 0)
        ::close(nowhere);
}

void shareStandardErrorAgain()
{
    const int kept = s_messages.exchange(STDERR_FILENO);
    if (kept == STDERR_FILENO)
        return;
    ::dup2(kept, STDERR_FILENO);
    ::close(kept);
}

int messageDescriptor()
{
    return s_messages;
}

void writeMessage(std::string_view text) noexcept
{
    const int before = errno;
    while (!text.empty()) {
        const ssize_t written = ::write(messageDescriptor(), text.data(), text.size());
        if (written > 0)
            text.remove_prefix(static_cast<std::size_t>(written));
        else if (written == 0 || errno != EINTR)
            break;
    }
    errno = before;
}

} // namespace lamina
