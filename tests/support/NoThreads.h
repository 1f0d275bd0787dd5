#pragma once

#include <sys/resource.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace lamina::test {

/// The user of nobody's files, who may have no thread beside those that run: for a process of a test's own, which must
/// have begun as root's.
inline constexpr uid_t kNobody = 65534;

/// Whether there is no further thread to be had from now on.
inline bool takeThreadsAway()
{
    const rlimit none{0, 0};
    if (::setrlimit(RLIMIT_NPROC, &none) != 0 || ::setgid(kNobody) != 0 || ::setuid(kNobody) != 0)
        return false;
    try {
        std::thread([] {}).join();
        return false;
    } catch (const std::system_error&) {
        return true;
    }
}

} // namespace lamina::test
