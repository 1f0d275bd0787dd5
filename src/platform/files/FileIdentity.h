#pragma once

#include <optional>
#include <string>
#include <sys/stat.h>
#include <utility>

namespace lamina {

/// A file by its place on a device: one file by whatever name or link, as long as it is there. A number that was freed
/// is given again.
using FileIdentity = std::pair<dev_t, ino_t>;

/// That of an open file.
inline std::optional<FileIdentity> identityOf(int file)
{
    struct stat status {};
    return ::fstat(file, &status) == 0 ? std::optional(FileIdentity{status.st_dev, status.st_ino}) : std::nullopt;
}

/// Of what a path leads to at this moment; nothing where it leads nowhere.
inline std::optional<FileIdentity> identityOf(const std::string& path)
{
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 ? std::optional(FileIdentity{status.st_dev, status.st_ino})
                                              : std::nullopt;
}

} // namespace lamina
