#include "platform/confined/Confinement.h"

#include "platform/confined/SyscallFilter_p.h"

#include <cerrno>
#include <cstdint>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace lamina {

namespace {

// Landlock's words, which are younger than some systems' headers.
constexpr long kCreateRuleset = 444;
constexpr long kRestrictSelf = 446;
constexpr unsigned kAskVersion = 1;

struct Ruleset {
    std::uint64_t files = 0;
    std::uint64_t network = 0;
    std::uint64_t scopes = 0;
};

/// Everything that this version of the kernel's can take away, from the first on.
Ruleset everything(long version)
{
    Ruleset rules;
    rules.files = (std::uint64_t{1} << 13) - 1; // reading, writing, running, listing, making and removing of any kind
    if (version >= 2)
        rules.files |= std::uint64_t{1} << 13; // moving between folders
    if (version >= 3)
        rules.files |= std::uint64_t{1} << 14; // cutting
    if (version >= 4)
        rules.network = 3; // TCP: listening and connecting
    if (version >= 5)
        rules.files |= std::uint64_t{1} << 15; // devices
    if (version >= 6)
        rules.scopes = 3; // unix sockets without a file, and signals
    return rules;
}

bool enclose()
{
    const long version = ::syscall(kCreateRuleset, nullptr, 0, kAskVersion);
    if (version < 1)
        return false;
    const Ruleset rules = everything(version);
    const long ruleset = ::syscall(kCreateRuleset, &rules, sizeof(rules), 0);
    if (ruleset < 0)
        return false;
    const bool done = ::syscall(kRestrictSelf, ruleset, 0) == 0;
    ::close(static_cast<int>(ruleset));
    return done;
}

void bound(int resource, rlim_t most)
{
    rlimit limits{};
    ::getrlimit(static_cast<__rlimit_resource_t>(resource), &limits);
    limits.rlim_cur = limits.rlim_max = most < limits.rlim_max ? most : limits.rlim_max;
    ::setrlimit(static_cast<__rlimit_resource_t>(resource), &limits);
}

} // namespace

Confinement confineProcess(int connection)
{
    constexpr rlim_t kMostDescriptors = 16;
    constexpr rlim_t kStack = rlim_t{8} << 20; // which the bound of memory doesn't count
    bound(RLIMIT_CORE, 0);
    bound(RLIMIT_FSIZE, 0);
    bound(RLIMIT_NOFILE, kMostDescriptors);
    bound(RLIMIT_STACK, kStack);
    ::prctl(PR_SET_DUMPABLE, 0);
    if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0)
        return Confinement::None;
    const bool enclosed = enclose();
    if (!filterSyscalls(connection))
        return Confinement::None;
    return enclosed ? Confinement::Enclosed : Confinement::Filtered;
}

} // namespace lamina
