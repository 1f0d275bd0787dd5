#pragma once

#include "platform/photos/index/PhotoRecords.h"

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace lamina {

class PhotoIndex;

/// Photos in the order shown: newest first, then by identifier. Never null and never changed.
using PhotoIDs = std::shared_ptr<const std::vector<PhotoID>>;

/// A folder that is an album of its own kind, with everything beneath it.
enum class SmartFolder { None, Camera, Screenshots, Lamina };

/// A folder that holds pictures, itself or deep down.
struct LibraryFolder {
    FolderID id = 0;
    std::string path;
    std::string title;                     ///< its name, as text: bytes that are none are replaced
    SmartFolder smart = SmartFolder::None; ///< what lies beneath a smart folder has its value too
    int parent = -1;                       ///< index in `LibrarySnapshot::folders`, less than its own; -1: at the top
    PhotoIDs photos;                       ///< its own, without those of folders in it
};

/// A file from outside all roots that is shown while this process lives; the index doesn't know it.
struct LooseFile {
    PhotoID id = 0;
    std::string path;
    int width = 0, height = 0; ///< upright; 0: not known
    double date = 0;           ///< seconds since the beginning of 1970, UTC
    std::int64_t modified = 0; ///< nanoseconds since 1970
};

/// The library at one moment. Immutable, cheap to hold: what has not changed is shared with the one before.
struct LibrarySnapshot {
    std::uint64_t generation = 0; ///< counts up with each one that is published
    PhotoIDs all;                 ///< every photo, loose ones too
    /// Depth first in the order shown: the user's folders, by title on each level, then the smart ones, which are at
    /// the top wherever they lie. The folder for pictures itself is none of them, a further root is one.
    std::vector<LibraryFolder> folders;
    PhotoIDs camera, screenshots, lamina; ///< all photos in and beneath smart folders of the kind
    /// The paths of all folders that the library looks at, those without pictures and the roots included.
    std::shared_ptr<const std::unordered_map<FolderID, std::string>> folderPaths;
    std::shared_ptr<const std::vector<LooseFile>> looseFiles; ///< by identifier; never null
    std::shared_ptr<PhotoIndex> index;                        ///< knows every other photo
    bool complete = false;                                    ///< the first walk through all roots is over
};
using LibrarySnapshotPtr = std::shared_ptr<const LibrarySnapshot>;

/// From one snapshot to the next.
struct LibraryChange {
    LibrarySnapshotPtr before, after;
    std::vector<PhotoID> changed; ///< sorted: those in both whose content, date or place differs
};

} // namespace lamina
