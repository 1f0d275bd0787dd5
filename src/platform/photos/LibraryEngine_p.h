#pragma once

#include "platform/base/Result.h"
#include "platform/photos/LibraryRoots.h"
#include "platform/photos/LibrarySnapshot_p.h"
#include "platform/photos/index/PhotoRecords.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace lamina {

/// Keeps the library's index in step with the folders, in a thread of its own: walks them once, then watches them, and
/// publishes snapshots. It starts with the first call that asks for the library and costs nothing before; when nothing
/// changes it sleeps. Where the system has no thread to give, whoever waits for the library, or hands it something,
/// does its work, and nothing is watched. All operations are usable from any thread.
class LibraryEngine {
public:
    /// What tests narrow.
    struct Limits {
        std::size_t watches = std::numeric_limits<std::size_t>::max(); ///< folders watched; others are blind
        /// A file that somebody seems to write, and that is as long as it was this long before, is taken for finished.
        std::chrono::milliseconds idle{5000};
    };

    /// The one of the process, over `defaultLibraryRoots` until it is told others. Never destroyed; it stops when the
    /// process leaves, without keeping it waiting.
    static LibraryEngine& shared();

    explicit LibraryEngine(LibraryRoots roots, Limits limits);
    explicit LibraryEngine(LibraryRoots roots)
        : LibraryEngine(std::move(roots), Limits{})
    {
    }
    /// Stops at once: what is not in the index yet is found again next time. Not from the change handler.
    ~LibraryEngine();
    LibraryEngine(const LibraryEngine&) = delete;
    LibraryEngine& operator=(const LibraryEngine&) = delete;

    /// Other roots, before the start or after it: then those that are new are walked and the others leave. The index
    /// stays where it is once it is open.
    void configure(LibraryRoots roots);
    LibraryRoots roots() const;

    /// Whether anybody has asked for the library yet.
    bool isRunning() const;

    /// The library as it was last published. The first call opens the index and gives what is in there; the walk goes
    /// on behind.
    LibrarySnapshotPtr snapshot();

    /// Hears of each new snapshot, on the engine's thread and one at a time. Before the first `snapshot`, or it misses
    /// some. It may not wait for another thread that calls the engine.
    void setChangeHandler(std::function<void(const LibraryChange&)> handler);

    /// While one lives no new snapshot is published, and no file is taken into the index but by `adopt`. For moments:
    /// the engine stands still meanwhile. Movable.
    class Hold {
    public:
        Hold() = default;

    private:
        friend class LibraryEngine;
        explicit Hold(std::shared_ptr<void> release)
            : m_release(std::move(release))
        {
        }
        std::shared_ptr<void> m_release;
    };
    /// Waits for the step that the engine is taking, the listing of one folder.
    [[nodiscard]] Hold holdChanges();

    /// Takes a file that we have just written into the index, under an identifier that was reserved there, whoever may
    /// have found it before; a snapshot has it soon. Made under a hold that was taken before the file had its name, no
    /// snapshot of ours has it under another. A clip is known to the index, but no snapshot shows it. The error's
    /// subject is the path.
    Result<PhotoID> adopt(PhotoID reserved, const std::string& path);

    /// Shows files from outside all roots until the process ends; the handler hears on the engine's thread, after the
    /// snapshot with them is published, what identifiers they have, in their order: 0 for what is no picture by name or
    /// can't be found. A file in a root has its own.
    void addLooseFiles(std::vector<std::string> paths, std::function<void(std::vector<PhotoID>)> handler);

    /// Looks at the folders that can't be watched, and at all after changes were lost. Returns at once.
    void rescan();

    /// Starts the engine and waits until the first walk is over and all facts of what it has found are read. Not from
    /// the change handler, nor while holding changes.
    void waitUntilComplete();

private:
    class Impl;
    std::shared_ptr<Impl> m_impl;
};

} // namespace lamina
