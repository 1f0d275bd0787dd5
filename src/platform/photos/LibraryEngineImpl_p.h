#pragma once

#include "platform/files/FileReading.h"
#include "platform/photos/LibraryEngine_p.h"
#include "platform/photos/LibraryRoots.h"
#include "platform/photos/LibraryScanner_p.h"
#include "platform/photos/LibrarySnapshot_p.h"
#include "platform/photos/SnapshotBuilder_p.h"
#include "platform/photos/index/PhotoIndex.h"
#include "platform/photos/index/PhotoRecords.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace lamina {

/// What stands behind a `LibraryEngine`: its state, and the thread that all of the library's work happens on.
class LibraryEngine::Impl {
public:
    Impl(LibraryRoots roots, Limits limits);
    ~Impl();

    // From any thread.
    void configure(LibraryRoots roots);
    LibraryRoots roots() const;
    void start();
    bool isRunning() const;
    LibrarySnapshotPtr snapshot() const;
    void setHandler(std::function<void(const LibraryChange&)> handler);
    void hold();
    void release();
    /// Runs in the engine's thread, at a moment when nothing is held.
    void post(std::function<void()> command);
    std::shared_ptr<PhotoIndex> index() const { return m_index; }
    void waitUntilComplete();
    /// Ends the thread, and waits for that until the time is over.
    void stop(std::chrono::milliseconds longest);

    // Commands.
    void rescan();
    void adopt(const std::string& path);
    void takeLoose(const std::vector<std::string>& paths, const std::function<void(std::vector<PhotoID>)>& handler);

private:
    using Clock = std::chrono::steady_clock;
    using Time = Clock::time_point;

    LibraryRoots takeRoots();
    void reload();
    LibrarySnapshotPtr makeSnapshot(const LibraryPlaces::Changes& changes, bool isOtherTree);

    // The thread.
    void begin();
    bool isHeld();
    bool isAtWork() const;
    void run();
    /// What the thread would do, until it would rest: on the caller's, where the system has none to give.
    void workHere();
    bool wait(bool isBusy);
    int waitingTime(bool isBusy) const;
    bool work(bool isMounted);
    void runCommands();
    void gather(bool hasNews);
    void endGathering();
    bool isSettled() const;
    bool isPublicationDue();
    LibraryChange publish();
    void addMoved(LibraryChange& change) const;
    void tell(const LibraryChange& change);
    void wake() const;

    PhotoID looseID(const std::string& path);
    void forgetLoose();

    const Limits m_limits;
    const FileDescriptor m_wake;
    std::shared_ptr<PhotoIndex> m_index; ///< set by the start, and then no more

    mutable std::mutex m_startMutex;
    std::thread m_thread;
    std::atomic<bool> m_isThreadless = false; ///< the work is done by who waits for it
    std::atomic<bool> m_worksHere = false;
    std::atomic<bool> m_stopped = false;

    mutable std::mutex m_mutex; ///< guards what follows
    std::condition_variable m_news;
    LibraryRoots m_roots;
    std::uint64_t m_wantedRoots = 0; ///< counts the roots told
    std::uint64_t m_loadedRoots = 0; ///< the count of those that the scanner has
    std::uint64_t m_shownRoots = 0;  ///< the same of the snapshot
    LibrarySnapshotPtr m_snapshot;
    std::function<void(const LibraryChange&)> m_handler;
    std::vector<std::function<void()>> m_commands;
    bool m_isFinished = false;

    /// Held by the thread for a step; a hold waits for it.
    std::mutex m_stepMutex;
    std::atomic<int> m_wantedHolds = 0;
    int m_holds = 0; ///< guarded by `m_stepMutex`

    // The thread's own, but for the start.
    std::unique_ptr<LibraryScanner> m_scanner;
    SnapshotBuilder m_builder;
    std::uint64_t m_generation = 0;
    std::uint64_t m_losses = 0;
    bool m_hasBegun = false; ///< the first round with these roots
    bool m_isComplete = false;
    bool m_isReloaded = false; ///< all is other than what was published
    bool m_isUrgent = false;   ///< somebody waits for the next snapshot
    std::map<PhotoID, LooseFile> m_loose;
    std::vector<std::function<void()>> m_answers; ///< when the next snapshot is out
    Time m_firstMark, m_gatherEnd;
    bool m_isGathering = false;
    Time m_idleCheck;
    bool m_isAwaitingIdle = false;
    Time m_lastPublished;
    Clock::duration m_interval{};
};

} // namespace lamina
