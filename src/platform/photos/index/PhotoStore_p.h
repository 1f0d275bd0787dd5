#pragma once

#include "platform/base/Result.h"
#include "platform/photos/index/PhotoRecords.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

// Where the rows of the library's index lie: in a file (by the module with SQLite) or in memory alone. A store keeps
// rows and finds them again; what a row means, and which one belongs to a file, is `PhotoIndex`'s.

namespace lamina {

/// A record that may be of something that is no longer there.
template <class Record>
struct KeptRow {
    Record record;
    std::int64_t gone = 0; ///< since when, in seconds since the beginning of 1970; 0: it is there
};
using PhotoRow = KeptRow<PhotoRecord>;
using FolderRow = KeptRow<FolderRecord>;

/// The rows while one transaction writes them. Unknown keys belong to nobody: any number of rows may have one. After a
/// failure nothing is found or changed any more, and the transaction's outcome tells the cause.
class PhotoRows {
public:
    virtual ~PhotoRows() = default;

    /// An id that was never given before.
    virtual std::int64_t nextID() = 0;

    virtual std::optional<PhotoRow> photoWithKey(FileKey key) = 0;
    virtual std::optional<PhotoRow> photoNamed(FolderID folder, const std::string& name) = 0;
    /// Adds a row, under a new id where it has none, and gives its id; 0, and nothing is changed, where another has the
    /// id, the key or folder and name.
    virtual PhotoID insertPhoto(const PhotoRow& row) = 0;
    /// Replaces the row of this id if its folder, name and key are these already, which is quick; false, and nothing is
    /// changed, where they are not.
    virtual bool renewPhoto(const PhotoRow& row) = 0;
    /// Replaces the row of this id, which must leave keys and names to one row each.
    virtual void updatePhoto(const PhotoRow& row) = 0;
    /// Says of a photo, or of all in a folder, since when it is gone; those that are gone already stay as they are.
    virtual void markPhotoGone(PhotoID photo, std::int64_t since) = 0;
    virtual void markFolderGone(FolderID folder, std::int64_t since) = 0;

    virtual std::optional<FolderRow> folderWithKey(FileKey key) = 0;
    virtual std::optional<FolderRow> folderAt(const std::string& path) = 0;
    /// As with photos.
    virtual FolderID insertFolder(const FolderRow& row) = 0;
    virtual void updateFolder(const FolderRow& row) = 0;

    /// Removes for good what went before this time, folders only when no photo is left in them.
    virtual void forget(std::int64_t goneBefore) = 0;
};

/// All rows of a store, to go on with elsewhere.
struct StoreContents {
    std::string identity;
    std::int64_t nextID = 1;
    std::vector<FolderRow> folders;
    std::vector<PhotoRow> photos;
};

/// A place for rows. Usable from any thread. Every error is without a subject, and the end of this store: whoever uses
/// it takes what can still be read and goes on elsewhere.
class PhotoStore {
public:
    virtual ~PhotoStore() = default;

    /// 16 hexadecimal digits that no other index has.
    virtual std::string identity() const = 0;
    /// Whether the rows outlive the process.
    virtual bool isKept() const = 0;
    /// How often rows may have been lost since it was opened, since their file was damaged.
    virtual std::uint64_t lossCount() const = 0;

    /// These are `PhotoIndex`'s.
    virtual Result<std::vector<FolderRecord>> folders() = 0;
    virtual Result<std::vector<PhotoPlace>> photos() = 0;
    virtual Result<std::vector<PhotoRecord>> photosInFolder(FolderID folder) = 0;
    virtual Result<std::vector<PhotoRecord>> records(std::span<const PhotoID> photos) = 0;
    virtual Result<std::optional<PhotoRecord>> find(FileKey key) = 0;

    /// All that `changes` does, or nothing of it. It may be called again where the file had to be made anew.
    virtual Outcome write(const std::function<void(PhotoRows&)>& changes) = 0;

    /// What can be read, of a damaged file too. A store that never fails is not asked.
    virtual StoreContents contents() { return {}; }
};

} // namespace lamina
