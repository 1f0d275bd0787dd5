#include "platform/confined/ConfinedProcess_p.h"

#include "platform/base/Cancelling.h"
#include "platform/confined/ConfinedMessages_p.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <poll.h>
#include <spawn.h>
#include <sstream>
#include <string>
#include <string_view>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <vector>

namespace lamina {

namespace {

using namespace confined;

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kBoundsMemory = false; // the sanitizer's own maps are larger than any bound
constexpr bool kIsHeard = true;       // what the sanitizer finds is told there
constexpr double kSlowness = 20;
#else
constexpr bool kBoundsMemory = true;
constexpr bool kIsHeard = false;
constexpr double kSlowness = 1;
#endif

constexpr int kLook = 10;                        // milliseconds between two looks at the time and at who cancels
constexpr double kLongestStart = 30 * kSlowness; // seconds: the libraries may come from a slow disk
constexpr int kMostCalls = 256;

/// What codecs may need, with much to spare.
int mostThreads()
{
    static const int most = 32 + 4 * static_cast<int>(std::max(1u, std::thread::hardware_concurrency()));
    return most;
}

/// What the system tells of a process or a thread, from its state on, whatever it calls itself; empty where nothing.
std::string systemsWord(const std::filesystem::path& folder)
{
    std::ifstream file(folder / "stat");
    std::string line;
    std::getline(file, line, '\0');
    const std::size_t name = line.rfind(") ");
    return name == std::string::npos ? std::string() : line.substr(name + 2);
}

void bound(pid_t process, __rlimit_resource resource, std::uint64_t most)
{
    rlimit limits{};
    if (::prlimit(process, resource, nullptr, &limits) != 0)
        return;
    limits.rlim_cur = std::min<rlim_t>(limits.rlim_max, most);
    ::prlimit(process, resource, &limits, nullptr);
}

/// The program sees nothing of the surroundings but what finds its libraries, and what sanitizers are told.
std::vector<char*> surroundings()
{
    constexpr std::array<std::string_view, 5> kWanted{
        "LD_LIBRARY_PATH=", "LD_PRELOAD=", "LIBHEIF_PLUGIN_PATH=", "ASAN_OPTIONS=", "UBSAN_OPTIONS="};
    std::vector<char*> found;
    for (char** entry = environ; entry && *entry; ++entry)
        if (std::ranges::any_of(kWanted,
                                [&](std::string_view name) { return std::string_view(*entry).starts_with(name); }))
            found.push_back(*entry);
    found.push_back(nullptr);
    return found;
}

/// How the program begins: no descriptors but its socket, none of our signals' settings, a session of its own, so that
/// what is pressed in a terminal is not its business.
class Beginning {
public:
    explicit Beginning(int connection)
    {
        ::posix_spawn_file_actions_init(&m_files);
        ::posix_spawnattr_init(&m_attributes);
        ::posix_spawn_file_actions_addopen(&m_files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        ::posix_spawn_file_actions_addopen(&m_files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        if (!kIsHeard)
            ::posix_spawn_file_actions_addopen(&m_files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        ::posix_spawn_file_actions_adddup2(&m_files, connection, kConnection);
        ::posix_spawn_file_actions_addclosefrom_np(&m_files, kConnection + 1);
        sigset_t none;
        sigset_t all;
        ::sigemptyset(&none);
        ::sigfillset(&all);
        ::posix_spawnattr_setsigmask(&m_attributes, &none);
        ::posix_spawnattr_setsigdefault(&m_attributes, &all);
        ::posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSID);
    }
    ~Beginning()
    {
        ::posix_spawn_file_actions_destroy(&m_files);
        ::posix_spawnattr_destroy(&m_attributes);
    }
    Beginning(const Beginning&) = delete;
    Beginning& operator=(const Beginning&) = delete;

    /// A number of <cerrno>, or 0.
    int spawn(const std::string& path, pid_t& process)
    {
        std::string name = path;
        const std::array<char*, 2> arguments{name.data(), nullptr};
        return ::posix_spawn(&process, path.c_str(), &m_files, &m_attributes, arguments.data(), surroundings().data());
    }

private:
    posix_spawn_file_actions_t m_files{};
    posix_spawnattr_t m_attributes{};
};

/// The same open socket above the descriptors that a program begins with: we may have been started without them.
FileDescriptor lifted(int descriptor)
{
    const FileDescriptor low(descriptor);
    return FileDescriptor(::fcntl(low.get(), F_DUPFD_CLOEXEC, kConnection + 1));
}

} // namespace

std::unique_ptr<ConfinedProcess> ConfinedProcess::start(const std::string& path)
{
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0)
        return nullptr;
    FileDescriptor ours = lifted(ends[0]);
    const FileDescriptor theirs = lifted(ends[1]);
    if (ours.get() < 0 || theirs.get() < 0)
        return nullptr;
    std::unique_ptr<ConfinedProcess> made(new ConfinedProcess(path, std::move(ours)));
    pid_t process = 0;
    if (const int error = Beginning(theirs.get()).spawn(path, process); error != 0) {
        errno = error;
        return nullptr;
    }
    made->begin(process);
    return made;
}

ConfinedProcess::ConfinedProcess(std::string path, FileDescriptor connection)
    : m_path(std::move(path))
    , m_connection(std::move(connection))
{
}

void ConfinedProcess::begin(pid_t process)
{
    m_process = process;
    m_handle = FileDescriptor(static_cast<int>(::syscall(SYS_pidfd_open, process, 0)));
    m_isGone = false;
}

ConfinedProcess::~ConfinedProcess()
{
    end();
}

void ConfinedProcess::end()
{
    constexpr int kMoment = 20;
    if (m_isGone)
        return;
    if (m_handle.get() >= 0)
        ::syscall(SYS_pidfd_send_signal, m_handle.get(), SIGKILL, nullptr, 0);
    else
        ::kill(m_process, SIGKILL);
    reap(kMoment);
}

/// Whoever has this process may wait for its children, or let the system forget them: then there is none to wait for.
bool ConfinedProcess::reap(int milliseconds)
{
    const bool byHandle = m_handle.get() >= 0;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    for (;;) {
        siginfo_t info{};
        const int done = byHandle ? ::waitid(P_PIDFD, static_cast<id_t>(m_handle.get()), &info, WEXITED | WNOHANG)
                                  : ::waitid(P_PID, static_cast<id_t>(m_process), &info, WEXITED | WNOHANG);
        if (done == 0 && info.si_pid != 0)
            m_status = info.si_code == CLD_EXITED ? info.si_status : -info.si_status;
        m_isGone = (done == 0 && info.si_pid != 0) || (done != 0 && errno != EINTR);
        if (m_isGone || std::chrono::steady_clock::now() >= deadline)
            return m_isGone;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

double ConfinedProcess::processorSeconds() const
{
    clockid_t clock{};
    timespec time{};
    if (::clock_getcpuclockid(m_process, &clock) != 0 || ::clock_gettime(clock, &time) != 0)
        return 0;
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// Beside the memory of its own all that is mapped: what the system keeps for pages that are only read counts as
/// nobody's, but grows with it. Stacks and heaps of threads reserve more than they take.
void ConfinedProcess::boundMemory(std::size_t most) const
{
    constexpr std::uint64_t kReserved = std::uint64_t{1} << 30;
    if (!kBoundsMemory)
        return;
    bound(m_process, RLIMIT_DATA, m_dataBytes + most);
    bound(m_process, RLIMIT_AS, m_addressBytes + 2 * most + kReserved);
}

/// It may be left alone in the midst of a request, by an end of ours that it takes no notice of. Such a bound can't be
/// raised again, so it is one for all its requests.
void ConfinedProcess::boundLife(double processorSeconds)
{
    constexpr double kMore = 60 * kSlowness;
    if (m_life > 0)
        return;
    m_life = processorSeconds + kMore;
    const auto whole = static_cast<rlim_t>(std::min(m_life, 1e9)) + 2;
    const rlimit limits{whole, whole};
    ::prlimit(m_process, RLIMIT_CPU, &limits, nullptr);
}

int ConfinedProcess::threads() const
{
    std::istringstream line(systemsWord("/proc/" + std::to_string(m_process)));
    std::string word;
    for (int i = 0; i < 18; ++i) // state, parent, ...
        line >> word;
    return std::atoi(word.c_str());
}

/// Whether all its threads wait for something, and not for a slow disk; false where the system doesn't tell.
bool ConfinedProcess::isAsleep() const
{
    std::error_code error;
    bool asleep = false;
    for (std::filesystem::directory_iterator task("/proc/" + std::to_string(m_process) + "/task", error), end;
         !error && task != end; task.increment(error)) {
        asleep = systemsWord(task->path()).starts_with('S');
        if (!asleep)
            return false;
    }
    return asleep && !error;
}

/// Sleep is counted in looks, and not by the clock, which runs on while this process itself is stopped.
ConfinedEnd ConfinedProcess::awaitMessage(const Patience& patience) const
{
    const int mostQuiet = static_cast<int>(patience.asleepSeconds * 1000 / kLook);
    double before = -1;
    int quiet = 0;
    for (;;) {
        pollfd connection{m_connection.get(), POLLIN, 0};
        if (::poll(&connection, 1, kLook) > 0)
            return ConfinedEnd::Answered;
        if (isCancelled(patience.cancelled))
            return ConfinedEnd::Cancelled;
        const double used = processorSeconds();
        if (used > patience.processorSeconds ||
            (patience.deadline && std::chrono::steady_clock::now() > *patience.deadline))
            return ConfinedEnd::TookTooLong;
        if (threads() > mostThreads())
            return ConfinedEnd::Stopped;
        quiet = used == before ? quiet + 1 : 0;
        before = used;
        if (mostQuiet > 0 && quiet > 0 && quiet % mostQuiet == 0 && isAsleep())
            return ConfinedEnd::TookTooLong;
    }
}

ConfinedEnd ConfinedProcess::receive(std::span<std::byte> answer)
{
    const std::optional<Message> message = receiveMessage(m_connection.get(), answer);
    if (message && message->size == answer.size() && message->descriptors.empty())
        return ConfinedEnd::Answered;
    if (message && message->size == 1 && answer[0] == kOutOfMemory)
        return ConfinedEnd::OutOfMemory;
    const bool isDead = message ? message->size == 0 : errno == ECONNRESET;
    if (isDead)
        learnCauseOfDeath();
    return ConfinedEnd::Stopped;
}

/// One that has waited long leaves with 0, which is also how it looks where somebody else has heard of its end.
void ConfinedProcess::learnCauseOfDeath()
{
    constexpr int kMoment = 500;
    m_wasEnded = reap(kMoment) && (m_status == -SIGKILL || m_status == 0);
}

ConfinedEnd ConfinedProcess::greet(const std::atomic<bool>* cancelled)
{
    constexpr double kMostWork = 10 * kSlowness;
    Greeting greeting;
    ConfinedEnd end = awaitMessage({deadlineAfter(kLongestStart), kMostWork, cancelled});
    if (end == ConfinedEnd::Answered)
        end = receive(std::as_writable_bytes(std::span(&greeting, 1)));
    if (end != ConfinedEnd::Answered)
        return end == ConfinedEnd::Cancelled ? end : ConfinedEnd::NotStarted;
    if (greeting.version != ownVersion())
        return ConfinedEnd::NotStarted;
    m_dataBytes = greeting.dataBytes;
    m_addressBytes = greeting.addressBytes;
    return greeting.confined == 1 ? ConfinedEnd::Answered : ConfinedEnd::NotConfined;
}

bool ConfinedProcess::isReadyFor(const ConfinedCall& call) const
{
    pollfd connection{m_connection.get(), POLLIN, 0};
    return m_calls < kMostCalls && ::poll(&connection, 1, 0) == 0 &&
           (m_life == 0 || processorSeconds() + call.processorSeconds * kSlowness <= m_life);
}

std::optional<ConfinedEnd> ConfinedProcess::exchange(const ConfinedCall& call)
{
    ++m_calls;
    boundMemory(call.memory);
    const double most = processorSeconds() + call.processorSeconds * kSlowness;
    boundLife(most);
    if (!sendMessage(m_connection.get(), call.request, call.descriptors)) {
        if (errno == EPIPE || errno == ECONNRESET)
            return std::nullopt;
        return ConfinedEnd::NotStarted;
    }
    const Patience patience{deadlineAfter(call.seconds * kSlowness), most, call.cancelled, call.asleepSeconds};
    const ConfinedEnd end = awaitMessage(patience);
    if (end != ConfinedEnd::Answered)
        return end;
    const ConfinedEnd answered = receive(call.answer);
    return m_wasEnded ? std::nullopt : std::optional(answered);
}

} // namespace lamina
