#pragma once

#include "platform/photos/index/PhotoRecords.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace lamina {

class PhotoRows;
class PhotoStore;

/// What the library knows of its photos, kept in a file so that the next start has it at once. The file can be lost
/// without harm, but for the identifiers: another walk of the folders fills it again. Several processes may have it
/// open.
///
/// It never fails: a damaged file, or one of another version, is made anew with what can be read of it; where nothing
/// can be written (a folder that is read-only, a full disk, no support for SQLite) it goes on in memory, as the log
/// says once.
///
/// Usable from any thread: reads go on while one thread writes.
class PhotoIndex {
public:
    /// The index in "photos/photos.sqlite" of this application's folder for caches (`cacheFolder()`), made where it is
    /// missing, for the owner alone. Empty: in memory.
    static std::shared_ptr<PhotoIndex> open(const std::string& cacheFolder);

    ~PhotoIndex();
    PhotoIndex(const PhotoIndex&) = delete;
    PhotoIndex& operator=(const PhotoIndex&) = delete;

    /// 16 hexadecimal digits that no other index has. The same for good, but for an index that was lost.
    const std::string& identity() const { return m_identity; }
    /// Whether it outlives the process now.
    bool isKept() const;
    /// Grows each time rows may have been lost because the file was damaged: whoever holds ids walks the folders again.
    std::uint64_t lossCount() const;

    /// The folders that are there, in the order of their ids.
    std::vector<FolderRecord> folders() const;
    /// The photos that are there, newest first (`isShownBefore`).
    std::vector<PhotoPlace> photos() const;
    /// Those in one folder, in the order of their ids.
    std::vector<PhotoRecord> photosInFolder(FolderID folder) const;
    /// The records of these photos, gone ones too, in their order; an id that is not known gives a record of id 0.
    std::vector<PhotoRecord> records(std::span<const PhotoID> photos) const;
    /// The photo, gone or there, that was last seen under this key.
    std::optional<PhotoRecord> find(FileKey key) const;

    /// Changes rows; see `write`.
    class Writer {
    public:
        /// Takes a folder in, or renews it: by its key, else by its path, else as a new one. One that is gone is known
        /// by its path alone, since keys are given again. It is there from now on. Gives its id; `record.id` does not
        /// count.
        FolderID putFolder(const FolderRecord& record);
        /// The folder is gone, and all photos in it.
        void removeFolder(FolderID folder);
        /// Takes a photo in, or renews it: the one of its key, if it is the same file by name or by content (length and
        /// time), since file systems give the keys of removed files to others; else the one of its folder and name;
        /// else a new one, under `record.id` where that was reserved. It is there from now on. Another photo that had
        /// its name is gone. Gives its id.
        PhotoID putPhoto(const PhotoRecord& record);
        /// Takes in a photo whose file was just made, under `record.id`, which was reserved for it: others that have
        /// its key or its name let go of them, an earlier photo of this name as well as what another process has
        /// already made of this very file. Gives its id.
        PhotoID putNewPhoto(const PhotoRecord& record);
        /// These photos are gone. They are known for another 30 days: what comes back has its id again.
        void markGone(std::span<const PhotoID> photos);

    private:
        friend class PhotoIndex;
        Writer(PhotoRows& rows, std::int64_t now)
            : m_rows(rows)
            , m_now(now)
        {
        }

        PhotoRows& m_rows;
        std::int64_t m_now; ///< seconds since the beginning of 1970
    };

    /// Makes all changes of `changes` or, should the process end, none. One thread writes at a time, the others wait.
    /// `changes` runs on this thread, before this returns; it uses nothing of the index but the writer. Where the file
    /// turns out to be damaged or the disk full it runs a second time: it must begin anew with what it gathers.
    void write(const std::function<void(Writer&)>& changes);

    /// An id for a photo whose file is to come; see `Writer::putNewPhoto`.
    PhotoID reserve();

    /// The name by which others know a photo: the identity, a hyphen, the id.
    std::string localIdentifier(PhotoID photo) const;
    /// Back again; nothing for a name that this index has not given.
    std::optional<PhotoID> photoID(std::string_view localIdentifier) const;

private:
    explicit PhotoIndex(std::unique_ptr<PhotoStore> store);
    std::shared_ptr<PhotoStore> store() const;
    /// Goes on in memory with what the store still has, unless another thread has seen to it.
    void leave(const std::shared_ptr<PhotoStore>& store, const std::string& cause) const;
    template <class Read>
    auto read(const Read& read) const;
    void change(const std::function<void(PhotoRows&)>& changes) const;

    const std::string m_identity;
    mutable std::mutex m_storeMutex;
    mutable std::shared_ptr<PhotoStore> m_store; ///< where the rows are now
    mutable std::uint64_t m_lossesBefore = 0;    ///< of stores that were left
    mutable std::mutex m_writing;
    std::atomic<bool> m_forgotten = false; ///< what went long ago has been removed
};

} // namespace lamina
