#pragma once

#include "platform/base/Deadline.h"
#include "platform/confined/ConfinedPool.h"
#include "platform/files/FileReading.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <sys/types.h>

namespace lamina {

/// One program behind its socket. One thread at a time.
class ConfinedProcess {
public:
    /// Null with errno where it can't be started.
    static std::unique_ptr<ConfinedProcess> start(const std::string& path);
    /// Ends it.
    ~ConfinedProcess();
    ConfinedProcess(const ConfinedProcess&) = delete;
    ConfinedProcess& operator=(const ConfinedProcess&) = delete;

    const std::string& path() const { return m_path; }
    /// Waits until it is ready for requests.
    ConfinedEnd greet(const std::atomic<bool>* cancelled);
    /// Whether it waits for this request: it lives, and has said nothing unasked. It is not used for ever, since a
    /// codec may lose memory with every damaged file, and since the processor time of its life is bounded.
    bool isReadyFor(const ConfinedCall& call) const;
    /// How many requests it has had.
    int calls() const { return m_calls; }
    /// Nothing where it was gone before the request reached it, or left just then, or somebody else killed it: the
    /// user, or the system for want of memory.
    std::optional<ConfinedEnd> exchange(const ConfinedCall& call);

    /// Ends it, and waits a moment for the system to be done with it.
    void end();
    /// Whether the system keeps nothing of it any more; looked at without waiting.
    bool isGone() { return m_isGone || reap(0); }

private:
    ConfinedProcess(std::string path, FileDescriptor connection);
    void begin(pid_t process);

    /// What a wait for its next word is bound by.
    struct Patience {
        Deadline deadline;
        double processorSeconds; ///< of its clock
        const std::atomic<bool>* cancelled;
        double asleepSeconds = 0; ///< 0: without a bound
    };
    ConfinedEnd awaitMessage(const Patience& patience) const;
    ConfinedEnd receive(std::span<std::byte> answer);
    void learnCauseOfDeath();
    double processorSeconds() const;
    void boundMemory(std::size_t most) const;
    void boundLife(double processorSeconds);
    int threads() const;
    bool isAsleep() const;
    bool reap(int milliseconds);

    std::string m_path;
    FileDescriptor m_connection;
    pid_t m_process = 0;
    FileDescriptor m_handle{-1}; ///< of the process itself, whose number may become another's; none on older kernels
    std::uint64_t m_dataBytes = 0;
    std::uint64_t m_addressBytes = 0;
    double m_life = 0; ///< processor seconds that it has altogether; 0 before the first request
    int m_calls = 0;
    bool m_isGone = true;    ///< nor is there one before it begins
    int m_status = 0;        ///< how it left, once it is gone: its own word, or the negative number of a signal
    bool m_wasEnded = false; ///< not by the request, as far as can be told
};

} // namespace lamina
