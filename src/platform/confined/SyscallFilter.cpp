#include "platform/confined/SyscallFilter_p.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sched.h>
#include <span>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

namespace lamina {

namespace {

#if defined(__x86_64__)
constexpr std::uint32_t kArchitecture = AUDIT_ARCH_X86_64;
#elif defined(__aarch64__)
constexpr std::uint32_t kArchitecture = AUDIT_ARCH_AARCH64;
#else
constexpr std::uint32_t kArchitecture = 0; // unknown: nothing is let in
#endif

constexpr std::uint32_t kAllow = SECCOMP_RET_ALLOW;
constexpr std::uint32_t kEnd = SECCOMP_RET_KILL_PROCESS;

constexpr std::uint32_t failing(int error)
{
    return SECCOMP_RET_ERRNO | static_cast<std::uint32_t>(error);
}

/// What becomes of one call.
struct Rule {
    int call;
    std::uint32_t action = kAllow;
};

/// Looks at the rules that follow.
constexpr std::uint32_t kFurther = SECCOMP_RET_TRACE;

/// A call that is let through where one of its arguments, as far as the mask goes, has a value.
struct ArgumentRule {
    int call;
    unsigned argument;
    std::uint64_t mask;
    std::uint64_t value;
    std::uint32_t otherwise = failing(EPERM);
    std::uint32_t action = kAllow;
};

// Whatever stands in none of the tables is told to be unknown, which libraries take for an older kernel.
constexpr std::uint32_t kDefault = failing(ENOSYS);

constexpr Rule kRules[] = {
    {__NR_futex},
    {__NR_pread64},
    {__NR_munmap},
    {__NR_mremap},
    {__NR_madvise},
    {__NR_brk},
    {__NR_close},
    {__NR_ppoll},
    {__NR_sched_yield},
    {__NR_sched_getaffinity},
    {__NR_getpid},
    {__NR_gettid},
    {__NR_set_robust_list},
    {__NR_rseq},
    {__NR_rt_sigaction},
    {__NR_rt_sigprocmask},
    {__NR_rt_sigreturn},
    {__NR_sigaltstack},
    {__NR_restart_syscall},
    {__NR_exit},
    {__NR_exit_group},
    {__NR_clock_gettime},
    {__NR_clock_getres},
    {__NR_clock_nanosleep},
    {__NR_nanosleep},
    {__NR_gettimeofday},
    {__NR_getrandom},
    {__NR_sysinfo},
    {__NR_uname},
    // The C library falls back to the older call, whose flags can be seen here.
    {__NR_clone3, failing(ENOSYS)},
    {__NR_openat, failing(EACCES)},
    {__NR_openat2, failing(EACCES)},
    {__NR_execve, kEnd},
    {__NR_execveat, kEnd},
    {__NR_socket, kEnd},
    {__NR_socketpair, kEnd},
    {__NR_connect, kEnd},
    {__NR_bind, kEnd},
    {__NR_ptrace, kEnd},
    {__NR_process_vm_readv, kEnd},
    {__NR_process_vm_writev, kEnd},
    {__NR_bpf, kEnd},
    {__NR_io_uring_setup, kEnd},
    {__NR_unshare, kEnd},
#if defined(__SANITIZE_ADDRESS__) // sanitizers try by a pipe which memory can be read
    {__NR_pipe2},
    {__NR_read},
    {__NR_write},
#endif
#if defined(__x86_64__) // calls that the newer processor never had
    {__NR_poll},
    {__NR_open, failing(EACCES)},
    {__NR_creat, failing(EACCES)},
    {__NR_fork, kEnd},
    {__NR_vfork, kEnd},
#endif
};

std::vector<ArgumentRule> argumentRules(int connection)
{
    constexpr std::uint64_t kWhole = ~std::uint64_t{0};
    constexpr std::uint64_t kDescriptor = 0xFFFFFFFF;
    const auto wire = static_cast<std::uint64_t>(connection);
    const auto self = static_cast<std::uint64_t>(::getpid());
    return {
        {__NR_recvmsg, 0, kDescriptor, wire},
        {__NR_sendmsg, 0, kDescriptor, wire},
        {__NR_write, 0, kDescriptor, STDERR_FILENO},
        {__NR_writev, 0, kDescriptor, STDERR_FILENO},
        // Private memory is bounded. Shared memory of its own, growing stacks and huge pages are counted elsewhere.
        {__NR_mmap, 2, PROT_EXEC, PROT_EXEC, kFurther, failing(EPERM)},
        {__NR_mmap, 3, MAP_SHARED | MAP_ANONYMOUS, MAP_SHARED | MAP_ANONYMOUS, kFurther, failing(EPERM)},
        {__NR_mmap, 3, MAP_GROWSDOWN | MAP_HUGETLB, 0},
        {__NR_mprotect, 2, PROT_EXEC, 0},
        {__NR_clone, 0, CLONE_THREAD, CLONE_THREAD, kEnd},
        {__NR_tgkill, 0, kDescriptor, self},
        {__NR_prctl, 0, kDescriptor, PR_SET_NAME},
        {__NR_prlimit64, 2, kWhole, 0}, // bounds may be read
    };
}

/// The filter's program as it grows.
class FilterText {
public:
    void load(std::size_t offset) { add(BPF_LD | BPF_W | BPF_ABS, static_cast<std::uint32_t>(offset)); }
    void mask(std::uint32_t bits) { add(BPF_ALU | BPF_AND | BPF_K, bits); }
    void end(std::uint32_t action) { add(BPF_RET | BPF_K, action); }
    /// Jumps over so many steps where what was loaded is this, is something else, or is less.
    void skipWhere(std::uint32_t value, std::uint8_t steps) { add(BPF_JMP | BPF_JEQ | BPF_K, value, steps, 0); }
    void skipUnless(std::uint32_t value, std::uint8_t steps) { add(BPF_JMP | BPF_JEQ | BPF_K, value, 0, steps); }
    void skipBelow(std::uint32_t value, std::uint8_t steps) { add(BPF_JMP | BPF_JGE | BPF_K, value, 0, steps); }
    std::span<sock_filter> steps() { return m_steps; }

private:
    void add(int code, std::uint32_t value, std::uint8_t whereTrue = 0, std::uint8_t whereFalse = 0)
    {
        m_steps.push_back({static_cast<std::uint16_t>(code), whereTrue, whereFalse, value});
    }
    std::vector<sock_filter> m_steps;
};

void write(FilterText& text, const ArgumentRule& rule)
{
    constexpr std::size_t kHalf = sizeof(std::uint32_t);
    const std::size_t place = offsetof(seccomp_data, args) + rule.argument * sizeof(std::uint64_t);
    const auto low = [](std::uint64_t number) { return static_cast<std::uint32_t>(number); };
    const auto high = [](std::uint64_t number) { return static_cast<std::uint32_t>(number >> 32); };
    text.skipUnless(static_cast<std::uint32_t>(rule.call), 8);
    text.load(place); // both processors keep the low half first
    text.mask(low(rule.mask));
    text.skipUnless(low(rule.value), 4);
    text.load(place + kHalf);
    text.mask(high(rule.mask));
    text.skipUnless(high(rule.value), 1);
    text.end(rule.action);
    if (rule.otherwise == kFurther)
        text.load(offsetof(seccomp_data, nr));
    else
        text.end(rule.otherwise);
}

FilterText filterFor(int connection)
{
    FilterText text;
    text.load(offsetof(seccomp_data, arch));
    text.skipWhere(kArchitecture, 1);
    text.end(kEnd);
    text.load(offsetof(seccomp_data, nr));
#if defined(__x86_64__)
    constexpr std::uint32_t kOtherNumbering = 0x40000000; // of 32-bit programs on the same processor
    text.skipBelow(kOtherNumbering, 1);
    text.end(kEnd);
#endif
    for (const Rule& rule : kRules) {
        text.skipUnless(static_cast<std::uint32_t>(rule.call), 1);
        text.end(rule.action);
    }
    for (const ArgumentRule& rule : argumentRules(connection))
        write(text, rule);
    text.end(kDefault);
    return text;
}

} // namespace

bool filterSyscalls(int connection)
{
    if (kArchitecture == 0)
        return false;
    FilterText text = filterFor(connection);
    const std::span<sock_filter> steps = text.steps();
    const sock_fprog program{static_cast<unsigned short>(steps.size()), steps.data()};
    return ::syscall(__NR_seccomp, SECCOMP_SET_MODE_FILTER, SECCOMP_FILTER_FLAG_TSYNC, &program) == 0;
}

} // namespace lamina
