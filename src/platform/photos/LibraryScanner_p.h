#pragma once

#include "platform/base/Result.h"
#include "platform/photos/FactsReader_p.h"
#include "platform/photos/FolderWalk_p.h"
#include "platform/photos/FolderWatch_p.h"
#include "platform/photos/LibraryPlaces_p.h"
#include "platform/photos/LibraryRoots.h"
#include "platform/photos/LibraryTree_p.h"
#include "platform/photos/MountWatch_p.h"
#include "platform/photos/index/PhotoIndex.h"
#include "platform/photos/index/PhotoRecords.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace lamina {

/// Finds out what has changed in the folders, and takes it into the index. Events only mark what is to be looked at; a
/// round looks at all that is marked, a folder a step. What a folder no longer has is taken away at the round's end, so
/// that what was moved is never gone in between. For one thread at a time.
class LibraryScanner {
public:
    /// `wake`: called in any thread when a file's facts have come and `step` has something to do.
    LibraryScanner(std::shared_ptr<PhotoIndex> index, std::size_t mostWatches, std::function<void()> wake);
    ~LibraryScanner();

    /// Begins with other roots: the tree and the places are what the index has of them, and everything is marked.
    void load(const LibraryRoots& roots);

    LibraryTree& tree() { return *m_tree; }
    LibraryPlaces& places() { return m_places; }
    /// Whether there is anything that a new snapshot would show.
    bool hasNews() const { return m_isTreeChanged || m_places.hasChanges() || !m_writes.empty(); }
    /// Whether folders have come or gone since the last time.
    bool takeTreeChanged() { return std::exchange(m_isTreeChanged, false); }

    /// To be waited on until they can be read, and with POLLPRI; see `readEvents`.
    int watchDescriptor() const { return m_watch.descriptor(); }
    int mountDescriptor() const { return m_mounts.descriptor(); }
    /// Reads what the watches tell, and marks what it concerns. `isMounted`: the mounts have something to tell. Whether
    /// there was anything.
    bool readEvents(bool isMounted);
    /// Marks a folder, or the folder of a file, with the file's name: it is looked at whatever the watch tells.
    void touch(const std::string& path);
    /// Marks the folders that can't be watched.
    void touchBlind();
    /// Has a round follow when one of these comes or goes, and no longer for those named before. Absolute paths.
    void watchFiles(std::vector<std::string> paths);
    /// Marks everything.
    void touchAll();
    /// Whether files are left alone since somebody seems to be writing them.
    bool hasWriting() const { return m_hasWriting; }
    /// Marks those of them that have not changed since the last call: nobody may ever close what was only given another
    /// name.
    void touchIdle();
    bool hasMarks() const { return m_checksRoots || !m_marked.empty(); }

    /// Everything that is marked is looked at by the steps that follow.
    void beginRound();
    /// Looks at one folder, or takes the facts that have come; false: there is nothing to do at the moment.
    bool step();
    /// Writes what has been found so far.
    void flush();
    /// Takes a file in a folder of the tree into the index at once, and gives its photo; 0: in none of them.
    PhotoID take(const std::string& folderPath, const ListedFile& file);
    /// Whether all that was begun is done: nothing is read any more, and the index has it.
    bool isSettled() const;
    /// Lets go of what is being read, for a quick end.
    void stop() { m_facts.stop(); }

private:
    struct Reading {
        std::uint64_t ticket = 0;
        FolderID folder = 0;
        FileKey key;
        std::int64_t modified = 0, bytes = 0;
        bool isLink = false;
    };
    struct Write {
        PhotoRecord record;
        bool isOther = false; ///< as shown, from before
    };
    enum class Whereabouts { Gone, File, Link };
    using Rows = std::unordered_map<std::string, const PhotoRecord*>;

    // Marks.
    void mark(TreeFolder& folder, bool wholly);
    void markParent(const TreeFolder& folder);
    void takeEvent(const WatchEvent& event);
    void takeMount(const std::string& point);
    void takeFolderEvent(TreeFolder& folder, const WatchEvent& event);
    void takeFileEvent(TreeFolder& folder, const WatchEvent& event);

    // Folders.
    void checkRoots();
    void checkRoot(const std::string& path);
    void anchor(const std::string& path);
    void look(TreeFolder& folder);
    void list(TreeFolder& folder);
    void watch(TreeFolder& folder);
    void takeChildren(TreeFolder& folder, const std::vector<ListedFolder>& listed);
    TreeFolder* takeChild(TreeFolder& folder, const ListedFolder& listed);
    void putFolders(const std::vector<TreeFolder*>& folders);
    bool isElsewhere(FileKey key, const std::string& path) const;
    void reportUnreadable(TreeFolder& folder, const Error& error);

    // Files.
    void compare(TreeFolder& folder, const std::vector<ListedFile>& files, const std::set<std::string>* names);
    void takeFile(TreeFolder& folder, const ListedFile& file, const PhotoRecord* row);
    void takeOtherKey(const TreeFolder& folder, const ListedFile& file, const PhotoRecord& row);
    bool takeKnown(const TreeFolder& folder, const ListedFile& file);
    bool repeatsReading(const TreeFolder& folder, const ListedFile& file);
    bool isKnown(const ListedFile& file) const;
    Whereabouts whereabouts(const PhotoRecord& record) const;
    void read(const TreeFolder& folder, const ListedFile& file, PhotoID id);
    void forgetReading(const std::string& path);
    void forgetReadings(const TreeFolder& folder, const std::vector<ListedFile>& files,
                        const std::set<std::string>* names);
    void takeFacts();
    std::vector<PhotoRecord> gonePhotos() const;
    void removeStale(const TreeFolder& folder, const std::vector<PhotoRecord>& rows);

    // A round's end.
    void endRound();
    std::vector<TreeFolder*> lostFolders() const;
    void takeAway(const std::vector<TreeFolder*>& lost);
    void remove(TreeFolder& folder);
    void wakeDoubles(const std::vector<FileKey>& keys);

    std::shared_ptr<PhotoIndex> m_index;
    FolderWatch m_watch;
    MountWatch m_mounts;
    std::unique_ptr<LibraryTree> m_tree;
    LibraryPlaces m_places;

    std::vector<std::string> m_watchedFiles;
    std::unordered_map<int, std::set<std::string>> m_anchors; ///< watches beside the roots, and the names that count
    std::unordered_set<TreeFolder*> m_marked;
    bool m_checksRoots = true;
    bool m_isTreeChanged = false;
    bool m_hasWriting = false;

    bool m_isRound = false;
    bool m_isNewIndex = false; ///< what has one name is not in the index
    std::deque<TreeFolder*> m_queue;
    std::unordered_set<PhotoID> m_missing;  ///< not where they were; they may be elsewhere
    std::unordered_set<FolderID> m_orphans; ///< rows of folders that have got another
    std::unordered_set<std::string> m_reported;

    std::unordered_map<std::string, Reading> m_reading; ///< by path
    std::unordered_map<FileKey, std::string, FileKeyHash> m_readingPaths;
    /// Files that are shown under another name or path already, by that file's key: they may be needed later.
    std::unordered_map<FileKey, std::set<std::string>, FileKeyHash> m_doubles;
    std::uint64_t m_ticket = 0;
    std::vector<FactsJob> m_jobs;
    std::vector<Write> m_writes;
    FactsReader m_facts; ///< last: its threads go first
};

} // namespace lamina
