#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <sys/types.h>
#include <vector>

namespace lamina {

/// How a request to a confined program ended.
enum class ConfinedEnd {
    Answered,
    NotInstalled, ///< the program is not there
    NotStarted,   ///< it can't be started, or isn't of this version
    NotConfined,  ///< this system offers no means to confine it
    Stopped,      ///< it died, or gave an answer that can't be
    TookTooLong,  ///< more time than it was given; it is ended
    OutOfMemory,  ///< more memory than it was given; it is ended
    Cancelled,
};

/// One request. Whatever it points to stays the caller's.
struct ConfinedCall {
    std::span<const std::byte> request = {};      ///< at most 2,048 bytes
    std::span<const int> descriptors = {};        ///< go with it: at most 4
    std::span<std::byte> answer = {};             ///< an answer of any other size counts as none
    std::size_t memory = 0;                       ///< bytes of its own that it may take beside those that it has
    double processorSeconds = 0;                  ///< that it may use, with all its threads
    double seconds = 0;                           ///< that it may take by the clock, which runs on while others work
    double asleepSeconds = 0;                     ///< that all its threads may wait for each other; 0: without a bound
    const std::atomic<bool>* cancelled = nullptr; ///< set from any thread to stop
    /// Whether the answer can be; what the program says is not to be trusted. A program whose answer can't is ended.
    std::function<bool()> accept = {};
};

class ConfinedProcess;

/// Programs of one kind that work without files and network (`serveConfined`), one for each request that is under way.
/// They are started when they are needed, and kept for the next request; at the next one, of those that are idle for
/// some seconds one stays, and after half a minute without any they leave. What befalls one of them, or the time that
/// it takes, concerns its own request alone. They end when this process does. All operations from any thread.
class ConfinedPool {
public:
    /// `file`: the program in the folder of the modules (see LoadedModule.h).
    explicit ConfinedPool(std::string file);
    ~ConfinedPool();
    ConfinedPool(const ConfinedPool&) = delete;
    ConfinedPool& operator=(const ConfinedPool&) = delete;

    /// Waits for a program that is free, and for its answer. Returns some milliseconds after it is cancelled, at the
    /// latest, whatever the program does.
    ConfinedEnd call(const ConfinedCall& call);

    /// Whether this is the process that has made the pool: a copy of it must not use the other's programs.
    bool isOwn() const;

private:
    struct Idle;
    struct Tried;
    class Place;
    enum class Which { Any, New };
    using Process = std::unique_ptr<ConfinedProcess>;

    Tried callOnce(const ConfinedCall& call, Which which);
    ConfinedEnd take(const ConfinedCall& call, Which which, Place& place);
    Process takeIdle(const std::string& path, const ConfinedCall& call, Which which, std::vector<Process>& stale);
    void giveBack(Process process, bool isGood) noexcept;

    const std::string m_file;
    const pid_t m_owner;
    std::mutex m_mutex;
    std::condition_variable m_freed;
    std::vector<Idle> m_idle; ///< those used last at the end
    std::vector<Process> m_ending;
    std::size_t m_busy = 0;
};

} // namespace lamina
