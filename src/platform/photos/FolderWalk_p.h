#pragma once

#include "platform/base/Result.h"
#include "platform/photos/index/PhotoRecords.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lamina {

/// A file that is a picture by its name.
struct ListedFile {
    std::string name;          ///< within its folder
    FileKey key;               ///< of what a link leads to
    std::int64_t modified = 0; ///< nanoseconds since the beginning of 1970, UTC
    std::int64_t bytes = 0;
    bool isLink = false;    ///< a symbolic link
    bool mayRepeat = false; ///< it is a link, or the file has several names
};

/// A folder within another.
struct ListedFolder {
    std::string name;
    FileKey key;
};

/// What is in a folder.
struct FolderListing {
    FileKey key;
    bool isRemote = false;             ///< others may change it without the kernel's telling
    std::vector<ListedFolder> folders; ///< by name, without links and hidden ones
    std::vector<ListedFile> files;     ///< by name: pictures with content, without hidden ones; links that lead to one
};

/// Whether files of this name are photos: a picture's extension, and not hidden.
bool isPhotoName(std::string_view name);

/// Lists a folder; a link is followed. Reads no file. The error's subject is the path.
Result<FolderListing> listFolder(const std::string& path);

/// One file of a folder; nothing where `listFolder` would have none.
std::optional<ListedFile> findFile(const std::string& folder, const std::string& name);

/// Whether the path is a folder, and which; a link is followed.
std::optional<FileKey> findFolder(const std::string& path);

/// The path without slashes at its end (the root folder keeps its own), and the folder that holds it.
std::string withoutSlashes(std::string path);
std::string parentPath(const std::string& path);
/// A name within a folder as a path.
std::string pathIn(const std::string& folder, std::string_view name);

/// For maps of files and folders.
struct FileKeyHash {
    std::size_t operator()(const FileKey& key) const
    {
        return std::hash<std::uint64_t>()(key.inode * 0x9E3779B97F4A7C15U ^ key.device);
    }
};

} // namespace lamina
