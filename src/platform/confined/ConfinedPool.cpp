#include "platform/confined/ConfinedPool.h"

#include "platform/base/Cancelling.h"
#include "platform/confined/ConfinedProcess_p.h"
#include "platform/files/ProgramFolder.h"

#include <algorithm>
#include <filesystem>
#include <new>
#include <optional>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>

namespace lamina {

namespace {

using namespace std::chrono_literals;

constexpr auto kKept = 5s;

/// One for each processor, and one for a request that is stuck.
std::size_t mostProcesses()
{
    static const std::size_t most = std::max(1u, std::thread::hardware_concurrency()) + 1;
    return most;
}

std::string programPath(const std::string& file)
{
    std::string path = installedFile("LAMINA_MODULES", LAMINA_MODULE_FOLDER, file);
    if (!path.empty())
        return path;
    std::error_code error;
    path = (std::filesystem::path(LAMINA_INSTALLED_MODULES) / file).string();
    return std::filesystem::exists(path, error) ? path : std::string();
}

} // namespace

struct ConfinedPool::Idle {
    Process process;
    std::chrono::steady_clock::time_point since;
};

struct ConfinedPool::Tried {
    ConfinedEnd end = ConfinedEnd::Stopped;
    bool deservesAnother = false; ///< it may be nothing of this request's that has ended the program
};

/// One of the programs that may be at work, with its program; given back on every road, also where memory is short.
class ConfinedPool::Place {
public:
    explicit Place(ConfinedPool& pool)
        : m_pool(pool)
    {
    }
    ~Place()
    {
        if (isTaken)
            m_pool.giveBack(std::move(process), isGood);
    }
    Place(const Place&) = delete;
    Place& operator=(const Place&) = delete;

    bool isTaken = false;
    Process process;
    bool isGood = false;

private:
    ConfinedPool& m_pool;
};

ConfinedPool::ConfinedPool(std::string file)
    : m_file(std::move(file))
    , m_owner(::getpid())
{
}

ConfinedPool::~ConfinedPool() = default;

bool ConfinedPool::isOwn() const
{
    return m_owner == ::getpid();
}

ConfinedEnd ConfinedPool::call(const ConfinedCall& call)
{
    const Tried first = callOnce(call, Which::Any);
    return first.deservesAnother ? callOnce(call, Which::New).end : first.end;
}

/// Another try is due where the program was gone, and where it may have been others' leavings that took its memory.
ConfinedPool::Tried ConfinedPool::callOnce(const ConfinedCall& call, Which which)
{
    Place place(*this);
    if (const ConfinedEnd taken = take(call, which, place); taken != ConfinedEnd::Answered)
        return {taken};
    const std::optional<ConfinedEnd> end = place.process->exchange(call);
    if (!end)
        return {ConfinedEnd::Stopped, true};
    place.isGood = end == ConfinedEnd::Answered && (!call.accept || call.accept());
    if (end == ConfinedEnd::Answered && !place.isGood)
        return {};
    return {*end, end == ConfinedEnd::OutOfMemory && place.process->calls() > 1};
}

/// Takes an idle program of this path out; those that are of no use any more go to `stale`.
ConfinedPool::Process ConfinedPool::takeIdle(const std::string& path, const ConfinedCall& call, Which which,
                                             std::vector<Process>& stale)
{
    Process taken;
    const auto oldest = std::chrono::steady_clock::now() - kKept;
    std::vector<Idle> left;
    while (!m_idle.empty()) {
        Idle idle = std::move(m_idle.back());
        m_idle.pop_back();
        if (idle.process->path() != path || !idle.process->isReadyFor(call))
            stale.push_back(std::move(idle.process));
        else if (!taken && which == Which::Any)
            taken = std::move(idle.process);
        else if (idle.since < oldest)
            stale.push_back(std::move(idle.process));
        else
            left.insert(left.begin(), std::move(idle));
    }
    m_idle = std::move(left);
    std::erase_if(m_ending, [](const Process& process) { return process->isGone(); });
    return taken;
}

ConfinedEnd ConfinedPool::take(const ConfinedCall& call, Which which, Place& place)
{
    if (isCancelled(call.cancelled))
        return ConfinedEnd::Cancelled;
    const std::string path = programPath(m_file);
    if (path.empty())
        return ConfinedEnd::NotInstalled;
    std::vector<Process> stale; // ended behind the lock
    std::unique_lock lock(m_mutex);
    for (;;) {
        place.process = takeIdle(path, call, which, stale);
        if (place.process || m_busy < mostProcesses())
            break;
        if (isCancelled(call.cancelled))
            return ConfinedEnd::Cancelled;
        m_freed.wait_for(lock, 10ms);
    }
    ++m_busy;
    place.isTaken = true;
    lock.unlock();
    if (place.process)
        return ConfinedEnd::Answered;
    place.process = ConfinedProcess::start(path);
    return place.process ? place.process->greet(call.cancelled) : ConfinedEnd::NotStarted;
}

void ConfinedPool::giveBack(Process process, bool isGood) noexcept
{
    if (process && !isGood)
        process->end();
    const std::lock_guard lock(m_mutex);
    --m_busy;
    m_freed.notify_one();
    try {
        if (isGood)
            m_idle.push_back({std::move(process), std::chrono::steady_clock::now()});
        else if (process && !process->isGone())
            m_ending.push_back(std::move(process));
    } catch (const std::bad_alloc&) { // it is not kept
    }
}

} // namespace lamina
