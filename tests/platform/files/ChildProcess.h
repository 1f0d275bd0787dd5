#pragma once

#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace lamina::test {

/// What a process that was begun here ends with; -1 when a signal ended it.
inline int exitCodeOf(pid_t child)
{
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

/// Runs work in a process of its own, which ends with what it gives.
template <class Work>
pid_t startChild(Work work)
{
    const pid_t child = ::fork();
    if (child < 0)
        throw std::runtime_error("no process");
    if (child == 0)
        ::_exit(static_cast<int>(work()));
    return child;
}

/// Gives up being the first user, in a child. To be called by the first user.
inline void become(uid_t user)
{
    if (user != 0 && (::setgid(user) != 0 || ::setuid(user) != 0))
        ::_exit(100);
}

} // namespace lamina::test
