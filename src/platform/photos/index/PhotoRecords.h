#pragma once

#include <cstdint>
#include <string>

// What the library's index keeps, as plain values.

namespace lamina {

/// A row of the index that names a photo for good: never given to another one. 0: none.
using PhotoID = std::int64_t;
/// The same for a folder.
using FolderID = std::int64_t;

/// What a file system knows a file by, whatever its name. Both 0: not known.
struct FileKey {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;

    bool isKnown() const { return device != 0 || inode != 0; }
    friend bool operator==(const FileKey&, const FileKey&) = default;
};

/// A folder in which there may be photos.
struct FolderRecord {
    FolderID id = 0;
    std::string path; ///< absolute, without a slash at its end; bytes as the file system has them
    FileKey key;

    friend bool operator==(const FolderRecord&, const FolderRecord&) = default;
};

/// A photo's file.
struct PhotoRecord {
    PhotoID id = 0;
    FolderID folder = 0;
    std::string name; ///< within its folder; bytes as the file system has them
    FileKey key;
    std::int64_t modified = 0; ///< nanoseconds since the beginning of 1970, UTC
    std::int64_t bytes = 0;
    int width = 0; ///< in pixels, as shown upright; 0: not known
    int height = 0;
    double date = 0;       ///< when it was taken, or else `modified`; seconds since the beginning of 1970, UTC
    bool hasFacts = false; ///< its header was read for this `modified` and these `bytes`

    friend bool operator==(const PhotoRecord&, const PhotoRecord&) = default;
};

/// A photo's place in a list that is sorted by date.
struct PhotoPlace {
    PhotoID id = 0;
    FolderID folder = 0;
    double date = 0; ///< seconds since the beginning of 1970, UTC

    friend bool operator==(const PhotoPlace&, const PhotoPlace&) = default;
};

/// Newest first; among equals the one that was found first.
inline bool isShownBefore(const PhotoPlace& x, const PhotoPlace& y)
{
    return x.date != y.date ? x.date > y.date : x.id < y.id;
}

} // namespace lamina
